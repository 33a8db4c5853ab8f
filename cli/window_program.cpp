// vokcube-window: starts "vokcube window" without the console that Windows would open beside it.
//
// It takes the arguments of that command, waits for its end and ends with its status. What the
// command says on its way out of a failure is shown in a message box.
#include <string>

#include "platform/failure.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_message_boxes.h"
// after the system's own header
#include <shlwapi.h>

namespace vok::windows {
namespace {

struct Pipe {
  Handle read, write;
};

Pipe NewPipe() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr, write = nullptr;
  if (::CreatePipe(&read, &write, &inherited, 0) == FALSE) {
    ThrowSystemFailure(::GetLastError(), "read what comes from", "vokcube.exe");
  }
  ::SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  return {Handle(read), Handle(write)};
}

std::wstring ProgramBeside() {
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.find_last_of(L'\\') + 1) + L"vokcube.exe";
}

Handle Start(const std::wstring& program, HANDLE output) {
  std::wstring command = L"\"" + program + L"\" window " + ::PathGetArgsW(::GetCommandLineW());
  STARTUPINFOW how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdOutput = how.hStdError = output;
  PROCESS_INFORMATION started{};
  if (::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                       nullptr, nullptr, &how, &started) == FALSE) {
    ThrowSystemFailure(::GetLastError(), "start", Utf8(program));
  }
  ::CloseHandle(started.hThread);
  return Handle(started.hProcess);
}

/// Until nobody can write into it any more.
std::string ReadAll(HANDLE pipe) {
  std::string all, part(4096, '\0');
  DWORD count = 0;
  while (::ReadFile(pipe, part.data(), static_cast<DWORD>(part.size()), &count, nullptr) != FALSE) {
    all.append(part, 0, count);
  }
  return all;
}

int Tell(const std::string& text, int status) {
  WindowsMessageBoxes().Show({text, "", MessageIcon::kCritical, MessageButtons::kOk, "", 0});
  return status;
}

int RunWindow() {
  Pipe said = NewPipe();
  const Handle program = Start(ProgramBeside(), said.write.get());
  said.write.Reset();
  const std::string words = ReadAll(said.read.get());
  ::WaitForSingleObject(program.get(), INFINITE);
  DWORD status = 0;
  ::GetExitCodeProcess(program.get(), &status);
  return status == 0 ? 0 : Tell(words, static_cast<int>(status));
}

}  // namespace
}  // namespace vok::windows

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  try {
    return vok::windows::RunWindow();
  } catch (const vok::Failure& failure) {
    return vok::windows::Tell(failure.description(), 1);
  }
}
