#include "ui/win32/widget.h"

#include <algorithm>
#include <vector>

#include "platform/failure.h"
#include "system/windows/utf16.h"
#include "ui/win32/dpi_and_theme.h"
#include "ui/win32/widgets.h"

namespace vok::windows {

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

namespace {

constexpr wchar_t kFromLeft = L'\x202A', kFromRight = L'\x202B', kEnd = L'\x202C';

/// Nothing for a line that needs none: it has no letters, or nothing but such of one direction, or
/// the mark of a key, which the system would then draw elsewhere.
std::wstring MarkOf(const std::wstring& line) {
  std::vector<WORD> kinds(line.size());
  ::GetStringTypeW(CT_CTYPE2, line.c_str(), static_cast<int>(line.size()), kinds.data());
  WORD own = 0;
  bool is_plain = true;
  for (const WORD kind : kinds) {
    if (own == 0 && (kind == C2_LEFTTORIGHT || kind == C2_RIGHTTOLEFT)) own = kind;
    is_plain = is_plain && (kind == own || kind == C2_WHITESPACE);
  }
  if (own == 0 || is_plain || line.find(L'&') != line.npos) return {};
  return {own == C2_LEFTTORIGHT ? kFromLeft : kFromRight};
}

}  // namespace

std::wstring ReadByItself(const std::wstring& text) {
  std::wstring marked;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(L"\r\n", at), text.size());
    const std::size_t next = std::min(text.find_first_not_of(L"\r\n", end), text.size());
    const std::wstring line = text.substr(at, end - at), mark = MarkOf(line);
    marked +=
        mark + line + (mark.empty() ? mark : std::wstring{kEnd}) + text.substr(end, next - end);
    at = next;
  }
  return marked;
}

std::wstring Widget::Drawn(const std::string& text) const {
  return begins_from_right_ ? ReadByItself(Utf16(text)) : Utf16(text);
}

void Widget::Create(HWND parent, int id, const Metrics& metrics) {
  begins_from_right_ = (::GetWindowLongPtrW(parent, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
  const Kind kind = WindowKind();
  window_ = ::CreateWindowExW(kind.extended_style, kind.window_class, L"", WS_CHILD | kind.style, 0,
                              0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                              ThisInstance(), nullptr);
  if (window_ == nullptr) {
    throw Failure(failure_number::kOutOfMemory,
                  "Cannot show the control " + control_.Name +
                      ": the system makes no more windows. Close other programs.");
  }
  SetMetrics(metrics);
  Created();
}

void Widget::SetMetrics(const Metrics& metrics) {
  Send(WM_SETFONT, reinterpret_cast<WPARAM>(metrics.font()), TRUE);
}

void Widget::SetState(bool shown, bool enabled) {
  const bool acts = shown && enabled;
  if (acts != (::IsWindowEnabled(window_) != FALSE)) ::EnableWindow(window_, acts);
  if (shown != shown_) ::ShowWindow(window_, shown ? SW_SHOWNA : SW_HIDE);
  shown_ = shown;
}

bool Widget::Refresh() {
  Write();
  if (error_ != control_.Error || dimmed_ != control_.Dimmed) {
    error_ = control_.Error;
    dimmed_ = control_.Dimmed;
    ::InvalidateRect(window_, nullptr, TRUE);
  }
  const std::string& drawn = control_.Symbol.empty() ? control_.Caption : control_.Symbol;
  if (caption_ == drawn) return false;
  caption_ = drawn;
  ::SetWindowTextW(window_, Drawn(caption_).c_str());
  return true;
}

WPARAM Widget::Command(WORD code) const {
  return MAKEWPARAM(static_cast<WORD>(::GetDlgCtrlID(window_)), code);
}

void Widget::SendCommand(WORD code) const {
  ::SendMessageW(::GetParent(window_), WM_COMMAND, Command(code),
                 reinterpret_cast<LPARAM>(window_));
}

void Widget::PostCommand(WORD code) const {
  ::PostMessageW(::GetParent(window_), WM_COMMAND, Command(code),
                 reinterpret_cast<LPARAM>(window_));
}

std::unique_ptr<Widget> MakeWidget(Control& control) {
  using enum ControlType;
  switch (control.Type) {
    case kLabel:
      return MakeLabel(control);
    case kTextBox:
      return MakeTextBox(control);
    case kComboBox:
      return MakeComboBox(control);
    case kListBox:
      return MakeListBox(control);
    case kCheckBox:
      return MakeCheckBox(control);
    case kCommandButton:
      return MakeButton(control);
    case kFrame:
      return MakeFrame(control);
    case kTabStrip:
      return MakeTabStrip(control);
    case kToolbar:
      return MakeToolbar(control);
    case kListView:
      return MakeListView(control);
    case kProgressBar:
      return MakeProgressBar(control);
    case kChart:
      return MakeChart(control);
    case kMenu:
      break;
  }
  throw Failure(failure_number::kInternal, "The menu " + control.Name + " has no window.");
}

}  // namespace vok::windows
