#include "tests/ui/win32/ui_driver.h"

#include <cstdlib>
#include <map>

#include "system/windows/utf16.h"
#include "tests/ui/win32/picture.h"
#include "ui/win32/form_window.h"

namespace vok::windows {
namespace {

constexpr int kMostLooks = 1000;
constexpr DWORD kDrawn = 800;  // milliseconds

/// The window whose title begins so when it is in front; nullptr when it does not come.
HWND WaitFor(const std::wstring& title) {
  for (int look = 0; look < kMostLooks; ++look, ::Sleep(20)) {
    const HWND front = ::GetForegroundWindow();
    if (front != nullptr && TextOf(front).starts_with(title) && ::IsWindowEnabled(front))
      return front;
  }
  return nullptr;
}

constexpr DWORD kHandAtRest = 100;  // milliseconds; a click in the midst of a move may miss

void Send(INPUT input) { ::SendInput(1, &input, sizeof input); }

void SendKey(WORD key, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.dwFlags = flags;
  Send(input);
}

void Type(wchar_t letter) {
  for (const DWORD flags : {DWORD{KEYEVENTF_UNICODE}, DWORD{KEYEVENTF_UNICODE | KEYEVENTF_KEYUP}}) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = letter;
    input.ki.dwFlags = flags;
    Send(input);
  }
}

void Press(std::string key) {
  static const std::map<std::string, WORD> kNamed = {
      {"Tab", VK_TAB}, {"Enter", VK_RETURN}, {"Esc", VK_ESCAPE}, {"Down", VK_DOWN},  {"F4", VK_F4},
      {"F5", VK_F5},   {"Ctrl", VK_CONTROL}, {"Alt", VK_MENU},   {"Shift", VK_SHIFT}};
  const auto plus = key.find('+');
  const std::string first = key.substr(0, plus);
  const auto named = kNamed.find(first);
  const WORD code = named != kNamed.end() ? named->second : static_cast<WORD>(first.at(0));
  SendKey(code, 0);
  if (plus != std::string::npos) Press(key.substr(plus + 1));
  SendKey(code, KEYEVENTF_KEYUP);
}

}  // namespace

UiDriver::UiDriver(const Form& form, std::string acts)
    : form_(form),
      title_(Utf16(form.Caption)),
      thread_([this, acts = std::move(acts)] { Act(acts); }) {}

void UiDriver::Act(const std::string& acts) {
  WaitFor(title_);
  for (std::size_t at = 0; at < acts.size(); ++at) {
    if (acts[at] != '{') {
      Type(static_cast<wchar_t>(acts[at]));
      continue;
    }
    const auto end = acts.find('}', at);
    Do(acts.substr(at + 1, end - at - 1));
    at = end;
  }
}

void UiDriver::Do(const std::string& act) {
  if (act == "close") {
    Press("Alt+F4");
  } else if (act == "end") {
    ::PostThreadMessageW(::GetWindowThreadProcessId(WaitFor(title_), nullptr), WM_QUIT, 7, 0);
  } else if (act.starts_with("wait ")) {
    WaitFor(Utf16(act.substr(5)));
  } else if (act.starts_with("click ")) {
    Click(act.substr(6));
  } else if (act.starts_with("await ")) {
    Await(act.substr(6));
  } else if (act.starts_with("picture ")) {
    if (std::getenv("VOKCUBE_SCREENSHOTS") != nullptr) ::Sleep(kDrawn);
    TakePicture(::GetForegroundWindow(), act.substr(8));
  } else {
    Press(act);
  }
}

/// Its window, once the form's window is in front; "NAME" or "NAME(INDEX)".
HWND UiDriver::ControlCalled(const std::string& name) const {
  const HWND window = WaitFor(title_);
  int id = kFirstControlId;
  for (const Control& control : form_.Controls()) {
    const std::string index = control.Index == kNoIndex ? "" : std::to_string(control.Index);
    if (name == control.Name + (index.empty() ? "" : "(" + index + ")")) break;
    ++id;
  }
  return ::GetDlgItem(window, id);
}

void UiDriver::Await(const std::string& name) {
  const HWND control = ControlCalled(name);
  for (int look = 0; look < kMostLooks && ::IsWindowVisible(control) == FALSE; ++look) {
    ::Sleep(20);
  }
}

void UiDriver::Click(const std::string& name) {
  RECT place{};
  ::GetWindowRect(ControlCalled(name), &place);
  ::SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  ::Sleep(kHandAtRest);
  for (const DWORD flags : {DWORD{MOUSEEVENTF_LEFTDOWN}, DWORD{MOUSEEVENTF_LEFTUP}}) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    Send(input);
  }
}

}  // namespace vok::windows
