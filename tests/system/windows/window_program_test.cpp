// The program of the start menu, as Windows starts it.
#include <gtest/gtest.h>

#include <future>
#include <string>

#include "shown_box.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

DWORD StatusOf(const std::wstring& arguments) {
  std::wstring command = L"\"" WINDOW_PROGRAM L"\" " + arguments;
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION started{};
  if (::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &how,
                       &started) == FALSE) {
    return ::GetLastError();
  }
  const Handle thread(started.hThread), program(started.hProcess);
  ::WaitForSingleObject(program.get(), INFINITE);
  DWORD status = 0;
  ::GetExitCodeProcess(program.get(), &status);
  return status;
}

TEST(WindowProgram, EndsAsTheCommandAndShowsWhatItSaid) {
  EXPECT_EQ(StatusOf(L"--help"), 0U);
  auto seen = std::async(std::launch::async, [] { return Press(L"VokCubeQ17", IDOK); });
  EXPECT_NE(StatusOf(L"\"two words\" --nonsense"), 0U);
  EXPECT_NE(seen.get().text.find(L"--nonsense"), std::wstring::npos);
}

}  // namespace
}  // namespace vok::windows
