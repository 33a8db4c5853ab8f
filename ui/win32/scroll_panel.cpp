#include "ui/win32/scroll_panel.h"

#include <algorithm>

#include "platform/failure.h"
#include "ui/win32/dpi_and_theme.h"
// after the system's own header
#include <windowsx.h>

namespace vok::windows {
namespace {

struct EmptyTemplate {
  DLGTEMPLATE dialog{};
  WORD menu = 0, window_class = 0, title = 0;
};

/// How far from `at` a range must be scrolled that is seen from `begin` to `end`.
int Shift(int begin, int end, int seen) {
  if (begin < 0) return begin;
  return std::max(0, std::min(end - seen, begin));
}

}  // namespace

ScrollPanel::ScrollPanel(HWND dialog, bool right_to_left) {
  EmptyTemplate empty;
  empty.dialog.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | DS_CONTROL;
  empty.dialog.dwExtendedStyle = WS_EX_CONTROLPARENT | (right_to_left ? WS_EX_LAYOUTRTL : 0);
  window_ = ::CreateDialogIndirectParamW(ThisInstance(), &empty.dialog, dialog, Procedure,
                                         reinterpret_cast<LPARAM>(this));
  if (window_ == nullptr) {
    throw Failure(
        failure_number::kOutOfMemory,
        "Cannot open the window: the system makes no more windows. Close other programs.");
  }
  ::SetWindowLongPtrW(window_, GWLP_ID, kPanelId);
}

INT_PTR CALLBACK ScrollPanel::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrW(window, DWLP_USER, lparam);
    return FALSE;
  }
  auto* const self = reinterpret_cast<ScrollPanel*>(::GetWindowLongPtrW(window, DWLP_USER));
  return self == nullptr || self->window_ == nullptr ? FALSE
                                                     : self->Handle(message, wparam, lparam);
}

INT_PTR ScrollPanel::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_DRAWITEM:
      ::SendMessageW(::GetParent(window_), message, wparam, lparam);
      return TRUE;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORLISTBOX:
      return ::SendMessageW(::GetParent(window_), message, wparam, lparam);
    case WM_HSCROLL:
    case WM_VSCROLL:
      OnBar(message == WM_HSCROLL ? SB_HORZ : SB_VERT, LOWORD(wparam));
      return TRUE;
    case WM_MOUSEWHEEL:
      OnWheel(GET_WHEEL_DELTA_WPARAM(wparam));
      return TRUE;
    case WM_SETCURSOR:
      return OnCursor() ? TRUE : FALSE;
    case WM_LBUTTONDOWN:
      if (IsOnSplitter({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) ::SetCapture(window_);
      return TRUE;
    case WM_MOUSEMOVE:
      OnMove(lparam);
      return TRUE;
    case WM_LBUTTONUP:
      if (::GetCapture() == window_) ::ReleaseCapture();
      return TRUE;
    default:
      return FALSE;
  }
}

void ScrollPanel::Place(const Area& area, const std::function<Extent(int)>& needed) {
  ::SetWindowPos(window_, nullptr, area.left, area.top, area.width, area.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  const Extent bars{::GetSystemMetrics(SM_CXVSCROLL), ::GetSystemMetrics(SM_CYHSCROLL)};
  seen_ = {area.width, area.height};
  Extent least = needed(seen_.width);
  if (least.height > seen_.height) seen_.width = std::max(0, seen_.width - bars.width);
  least = needed(seen_.width);
  if (least.width > seen_.width) seen_.height = std::max(0, seen_.height - bars.height);
  page_ = {std::max(seen_.width, least.width), std::max(seen_.height, least.height)};
  offset_ = {std::clamp(offset_.width, 0, page_.width - seen_.width),
             std::clamp(offset_.height, 0, page_.height - seen_.height)};
  SetBar(SB_HORZ, seen_.width, page_.width, offset_.width);
  SetBar(SB_VERT, seen_.height, page_.height, offset_.height);
}

void ScrollPanel::SetBar(int bar, int seen, int whole, int at) const {
  const SCROLLINFO info{sizeof info,
                        SIF_PAGE | SIF_RANGE | SIF_POS,
                        0,
                        std::max(0, whole - 1),
                        static_cast<UINT>(seen),
                        at,
                        0};
  ::SetScrollInfo(window_, bar, &info, TRUE);
}

void ScrollPanel::ScrollTo(Extent offset) {
  const Extent wanted{std::clamp(offset.width, 0, page_.width - seen_.width),
                      std::clamp(offset.height, 0, page_.height - seen_.height)};
  if (wanted == offset_) return;
  offset_ = wanted;
  ::SendMessageW(::GetParent(window_), kScrolled, 0, 0);
}

void ScrollPanel::OnBar(int bar, int code) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  ::GetScrollInfo(window_, bar, &info);
  Extent offset = offset_;
  int& at = bar == SB_HORZ ? offset.width : offset.height;
  const int whole_page = static_cast<int>(info.nPage), line = std::max(1, whole_page / 10);
  switch (code) {
    case SB_LINEUP:
      at -= line;
      break;
    case SB_LINEDOWN:
      at += line;
      break;
    case SB_PAGEUP:
      at -= whole_page;
      break;
    case SB_PAGEDOWN:
      at += whole_page;
      break;
    case SB_TOP:
      at = 0;
      break;
    case SB_BOTTOM:
      at = info.nMax;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      at = info.nTrackPos;
      break;
    default:
      return;
  }
  ScrollTo(offset);
}

void ScrollPanel::OnWheel(int distance) {
  constexpr int kNotchesPerPage = 4;
  ScrollTo(
      {offset_.width, offset_.height - distance * seen_.height / (kNotchesPerPage * WHEEL_DELTA)});
}

Extent ScrollPanel::WayTo(HWND part) const {
  if (::IsChild(window_, part) == FALSE) return {};
  RECT place{};
  ::GetWindowRect(part, &place);
  ::MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
  return {Shift(place.left, place.right, seen_.width),
          Shift(place.top, place.bottom, seen_.height)};
}

void ScrollPanel::Reveal(HWND part) {
  const Extent way = WayTo(part);
  ScrollTo({offset_.width + way.width, offset_.height + way.height});
}

bool ScrollPanel::IsOnSplitter(POINT place) const {
  const int x = static_cast<int>(place.x) + offset_.width - splitter_.left;
  return x >= 0 && x < splitter_.width;
}

bool ScrollPanel::OnCursor() const {
  POINT place{};
  ::GetCursorPos(&place);
  ::ScreenToClient(window_, &place);
  if (::ChildWindowFromPoint(window_, place) != window_ || !IsOnSplitter(place)) return false;
  ::SetCursor(::LoadCursorW(nullptr, MAKEINTRESOURCEW(32644)));  // both ways to the sides
  return true;
}

void ScrollPanel::OnMove(LPARAM place) const {
  if (::GetCapture() != window_) return;
  const int at = GET_X_LPARAM(place) + offset_.width + splitter_.width / 2;
  ::SendMessageW(::GetParent(window_), kSplit, static_cast<WPARAM>(std::max(1, at)), 0);
}

}  // namespace vok::windows
