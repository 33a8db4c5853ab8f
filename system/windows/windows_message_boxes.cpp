#include "system/windows/windows_message_boxes.h"

#include <utility>

#include "system/windows/system_dll.h"
#include "system/windows/system_header.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

thread_local HWND front = nullptr;

DWORD StyleOf(const vok::MessageBox& box) {
  // Yes or no is asked where something may be lost: not to be answered by a key too many.
  constexpr DWORD kButtons[] = {MB_OK, MB_YESNO | MB_DEFBUTTON2, MB_YESNOCANCEL};
  constexpr DWORD kIcons[] = {0, MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING, MB_ICONINFORMATION};
  return kButtons[static_cast<int>(box.buttons)] | kIcons[static_cast<int>(box.icon)] |
         (box.help_context > 0 ? MB_HELP : 0);
}

/// A box over a window that begins from the right does so, too.
DWORD DirectionOver(HWND owner) {
  const bool from_right =
      owner != nullptr && (::GetWindowLongPtrW(owner, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
  return from_right ? MB_RIGHT | MB_RTLREADING : 0;
}

MessageAnswer AnswerOf(int button) {
  switch (button) {
    case IDYES:
      return MessageAnswer::kYes;
    case IDNO:
      return MessageAnswer::kNo;
    case IDCANCEL:
      return MessageAnswer::kCancel;
    default:
      return MessageAnswer::kOk;
  }
}

/// The help file of the box that this thread shows: the system's call-back bears no data of ours.
thread_local const std::wstring* shown_help_file = nullptr;

// The help viewer may be missing from the system; asking for help then does nothing.
void CALLBACK OpenHelp(HELPINFO* asked) {
  constexpr UINT kContext = 0x000F;
  using HtmlHelp = HWND(WINAPI*)(HWND, const wchar_t*, UINT, DWORD_PTR);
  static const auto open = SystemFunction<HtmlHelp>(L"hhctrl.ocx", "HtmlHelpW");
  if (open == nullptr || shown_help_file == nullptr) return;
  open(nullptr, shown_help_file->c_str(), kContext, asked->dwContextId);
}

}  // namespace

HWND OwnerWindow() {
  if (front != nullptr && ::IsWindow(front) != FALSE) return front;
  const HWND active = ::GetActiveWindow();
  return active == nullptr ? nullptr : ::GetAncestor(active, GA_ROOT);
}

FrontWindow::FrontWindow(HWND window) : behind_(std::exchange(front, window)) {}

FrontWindow::~FrontWindow() { front = behind_; }

bool HasVisibleScreen() {
  USEROBJECTFLAGS flags{};
  DWORD needed = 0;
  const BOOL told = ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags,
                                                sizeof flags, &needed);
  return told == FALSE || (flags.dwFlags & WSF_VISIBLE) != 0;
}

MessageAnswer WindowsMessageBoxes::Show(const vok::MessageBox& box) {
  const std::wstring text = Utf16(box.text);
  const std::wstring title = Utf16(box.title.empty() ? "VokCubeQ17" : box.title);
  const std::wstring help_file = Utf16(box.help_file);
  MSGBOXPARAMSW parameters{};
  parameters.cbSize = sizeof parameters;
  parameters.hwndOwner = OwnerWindow();
  parameters.lpszText = text.c_str();
  parameters.lpszCaption = title.c_str();
  parameters.dwStyle = StyleOf(box) | DirectionOver(parameters.hwndOwner) |
                       (parameters.hwndOwner == nullptr ? MB_TASKMODAL : 0);
  parameters.dwContextHelpId = static_cast<DWORD_PTR>(box.help_context);
  parameters.lpfnMsgBoxCallback = OpenHelp;
  const auto* const outer = std::exchange(shown_help_file, &help_file);
  const int button = ::MessageBoxIndirectW(&parameters);
  shown_help_file = outer;
  return AnswerOf(button);
}

}  // namespace vok::windows
