#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>

#include "cli/terminal.h"
#include "system/automation/apartment.h"
#include "system/windows/pumped_wait.h"
#include "system/windows/system_header.h"
#include "system/windows/utf16.h"

namespace vok::cli {
namespace {

bool (*ask_to_stop)() = nullptr;

BOOL WINAPI Interrupt(DWORD type) {
  return (type == CTRL_C_EVENT || type == CTRL_BREAK_EVENT) && ask_to_stop() ? TRUE : FALSE;
}

std::vector<std::string> Arguments() {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int word = 1; word < count; ++word) arguments.push_back(windows::Utf8(words[word]));
  ::LocalFree(words);
  return arguments;
}

}  // namespace

int RunProgram(int, char**, int (*program)(std::vector<std::string> arguments)) {
  ::SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  const windows::Apartment apartment;
  return program(Arguments());
}

void WorkOnThread(const std::function<void()>& work) {
  const windows::Apartment apartment;
  work();
}

void Await(std::vector<std::jthread>& threads) {
  const HANDLE ended = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::jthread last([&] {
    threads.clear();
    ::SetEvent(ended);
  });
  windows::PumpedWait().For({&ended, 1});
  last.join();
  ::CloseHandle(ended);
}

void CatchInterrupts(bool (*ask)()) {
  ask_to_stop = ask;
  ::SetConsoleCtrlHandler(Interrupt, TRUE);
}

uint64_t FreeMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof(status);
  return ::GlobalMemoryStatusEx(&status) ? std::min(status.ullAvailPhys, status.ullAvailVirtual)
                                         : 0;
}

bool ErrorsAreShown() {
  const HANDLE errors = ::GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return ::GetConsoleMode(errors, &mode) != 0 &&
         ::SetConsoleMode(errors, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace vok::cli
