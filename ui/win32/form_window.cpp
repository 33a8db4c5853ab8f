#include "ui/win32/form_window.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "system/windows/utf16.h"
#include "ui/win32/dpi_and_theme.h"

namespace vok::windows {
namespace {

using enum ControlType;

constexpr COLORREF kErrorBack = RGB(0xFF, 0xC8, 0xC8);
constexpr COLORREF kErrorText = RGB(0, 0, 0);

/// A dialog without controls.
struct EmptyTemplate {
  DLGTEMPLATE dialog{};
  WORD menu = 0, window_class = 0, title = 0;
};

/// What the screen that the window is on has for windows.
RECT WorkArea(HWND window) {
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  ::GetMonitorInfoW(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &screen);
  return screen.rcWork;
}

}  // namespace

FormWindow::FormWindow(Form& form) : form_(form), error_brush_(::CreateSolidBrush(kErrorBack)) {}

FormWindow::FormWindow(Form& form, HWND owner) : FormWindow(form) {
  const OwnLook look;
  MakeDialog(owner);
  HandleDensityOurselves(window_);
  UseDensity();
  widgets_.emplace(form_, window_, *metrics_);
  menu_.emplace(form_, window_, [this](const Control& control) { return widgets_->IdOf(control); });
  WriteControls();
  Measure();
  PlaceOver(owner);
}

void FormWindow::MakeDialog(HWND owner) {
  EmptyTemplate empty;
  empty.dialog.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX |
                       (owner == nullptr ? WS_MINIMIZEBOX : 0);
  empty.dialog.dwExtendedStyle = WS_EX_CONTROLPARENT | (owner == nullptr ? WS_EX_APPWINDOW : 0) |
                                 (form_.RightToLeft ? WS_EX_LAYOUTRTL : 0);
  ::CreateDialogIndirectParamW(ThisInstance(), &empty.dialog, owner, Procedure,
                               reinterpret_cast<LPARAM>(this));
  if (window_ == nullptr) {
    throw Failure(failure_number::kNotSupported,
                  "Cannot open the window " + form_.Name +
                      ": this session has no screen that a window could be shown on.");
  }
}

FormWindow::~FormWindow() {
  widgets_.reset();
  if (window_ != nullptr) ::DestroyWindow(window_);
  ::DeleteObject(error_brush_);
}

void FormWindow::Show() {
  ::ShowWindow(window_, SW_SHOW);
  ::SetForegroundWindow(window_);
  MoveFocus();
  if (focused_ != nullptr) return;
  ::SendMessageW(window_, WM_NEXTDLGCTL,
                 reinterpret_cast<WPARAM>(::GetNextDlgTabItem(window_, nullptr, FALSE)), TRUE);
  focused_ = widgets_->Of(::GetFocus());
}

void FormWindow::ThrowFailure() const {
  if (failure_) std::rethrow_exception(failure_);
}

// ---- what the user does

INT_PTR CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrW(window, DWLP_USER, lparam);
    reinterpret_cast<FormWindow*>(lparam)->window_ = window;
    return FALSE;
  }
  auto* const self = reinterpret_cast<FormWindow*>(::GetWindowLongPtrW(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  try {
    return self->Handle(message, wparam, lparam);
  } catch (...) {
    if (!self->failure_) self->failure_ = std::current_exception();
    return FALSE;
  }
}

INT_PTR FormWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return TRUE;
    case WM_CLOSE:
      Cancel();
      return TRUE;
    case WM_NOTIFY: {
      auto& header = *reinterpret_cast<NMHDR*>(lparam);
      if (Widget* widget = WidgetOf(header.hwndFrom)) widget->OnNotify(header);
      return FALSE;
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
      if (const Widget* widget = WidgetOf(item.hwndItem)) widget->Paint(item);
      return TRUE;
    }
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORLISTBOX:
      return Colour(message, wparam, lparam);
    case WM_SIZE:
      Arrange();
      return FALSE;
    case WM_GETMINMAXINFO:
      Limit(*reinterpret_cast<MINMAXINFO*>(lparam));
      return FALSE;
    case WM_DPICHANGED:
      MoveToDensity(*reinterpret_cast<const RECT*>(lparam));
      return FALSE;
    case WM_NCDESTROY:
      window_ = nullptr;
      return FALSE;
    default:
      return FALSE;
  }
}

/// `event` says whether the form was told of anything. A rule may have closed the form: the caller
/// that waits for a message must notice.
template <typename Event>
void FormWindow::Tell(Event event) {
  try {
    if (event()) Refresh();
  } catch (...) {
    if (!failure_) failure_ = std::current_exception();
  }
  if (!IsOpen() && window_ != nullptr) ::PostMessageW(window_, WM_NULL, 0, 0);
}

void FormWindow::OnCommand(int id, int code) {
  if (writing_ || !widgets_) return;
  if (id == IDCANCEL) return Cancel();
  const Control* const control = widgets_->ControlWith(id);
  if (control == nullptr) return;
  Widget* const widget = widgets_->With(id);
  const bool clicked = widget == nullptr || code == BN_CLICKED;
  // The default button takes the focus when Enter clicks it, so that what was typed is left first;
  // where that is refused nothing is clicked.
  if (clicked && control->Default) ::SetFocus(widget->window());
  if (clicked && !SettleFocus()) return;
  if (widget == nullptr) {
    if (LeaveField()) Click(*control);
    return;
  }
  Tell([&] { return widget->OnCommand(form_, code); });
}

void FormWindow::Click(const Control& control) {
  Tell([&] {
    form_.Click(control.Id());
    return true;
  });
}

void FormWindow::Cancel() {
  for (const Control& control : form_.Controls()) {
    if (control.Cancel) return Click(control);
  }
  Tell([this] { return form_.Visible = false; });
}

void FormWindow::Dispatch(MSG& message) {
  const bool ours =
      window_ != nullptr && (message.hwnd == window_ || ::IsChild(window_, message.hwnd) != FALSE);
  if (!ours || (!menu_->Translate(message) && !::IsDialogMessageW(window_, &message))) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
  SettleFocus();
}

/// Tells the form when the focus went from one control to another; its going to another window is
/// no leaving. False when a rule took it elsewhere.
bool FormWindow::SettleFocus() {
  Widget* const taken = WidgetOf(::GetFocus());
  if (taken == nullptr || taken == focused_ || !IsOpen()) return true;
  Widget* const left = std::exchange(focused_, taken);
  if (left != nullptr) {
    Tell([&] {
      form_.Leave(left->control().Id());
      return true;
    });
  }
  return focused_ == taken && IsOpen();
}

/// The key of a menu is pressed in a field: that is left first. False when a rule sends the user
/// back to one.
bool FormWindow::LeaveField() {
  if (focused_ == nullptr) return true;
  bool sent_back = false;
  Tell([&] {
    form_.Leave(focused_->control().Id());
    sent_back = form_.Focus.has_value();
    return true;
  });
  return !sent_back && IsOpen();
}

/// Where the rules want it. The control that it goes away from was not left by the user.
void FormWindow::MoveFocus() {
  if (!form_.Focus) return;
  Widget* const widget = widgets_->Of(*std::exchange(form_.Focus, std::nullopt));
  if (widget == nullptr || ::IsWindowEnabled(widget->window()) == FALSE) return;
  focused_ = widget;
  ::SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(widget->window()), TRUE);
}

// ---- what it shows

void FormWindow::Refresh() {
  if (!IsOpen()) return;
  WriteControls();
  MoveFocus();
}

void FormWindow::WriteControls() {
  writing_ = true;
  const bool other_room = widgets_->Refresh();
  menu_->Refresh();
  if (caption_ != form_.Caption) {
    caption_ = form_.Caption;
    ::SetWindowTextW(window_, Utf16(caption_).c_str());
  }
  writing_ = false;
  if (other_room && layout_) Measure();
}

INT_PTR FormWindow::Colour(UINT message, WPARAM wparam, LPARAM lparam) {
  const Widget* const widget = WidgetOf(reinterpret_cast<HWND>(lparam));
  if (widget == nullptr) return FALSE;
  const Control& control = widget->control();
  const auto canvas = reinterpret_cast<HDC>(wparam);
  if (control.Dimmed && !control.Error) {
    ::SetBkColor(canvas, ::GetSysColor(COLOR_WINDOW));
    ::SetTextColor(canvas, ::GetSysColor(COLOR_GRAYTEXT));
    return reinterpret_cast<INT_PTR>(::GetSysColorBrush(COLOR_WINDOW));
  }
  if (!control.Error || (message == WM_CTLCOLORSTATIC && control.Type == kLabel)) return FALSE;
  ::SetBkColor(canvas, kErrorBack);
  ::SetTextColor(canvas, kErrorText);
  return reinterpret_cast<INT_PTR>(error_brush_);
}

// ---- where they stand

void FormWindow::UseDensity() {
  auto metrics = std::make_unique<Metrics>(form_.Font, DensityOf(window_));
  if (widgets_) widgets_->SetMetrics(*metrics);
  metrics_ = std::move(metrics);
}

/// The system says where the window shall stand, so that it does not leave the screen at once.
void FormWindow::MoveToDensity(const RECT& place) {
  UseDensity();
  ::SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  Measure();
}

/// nullptr for what is not a widget's.
Widget* FormWindow::WidgetOf(HWND part) const {
  return window_ != nullptr && widgets_ ? widgets_->Of(part) : nullptr;
}

LayoutSizes FormWindow::Sizes() const {
  const auto least = [this](const Control& control) {
    return widgets_->With(widgets_->IdOf(control))->Least(*metrics_);
  };
  return {.least = least,
          .gap = {metrics_->Across(4), metrics_->Down(3)},
          .margin = metrics_->Across(7),
          .frame_top = metrics_->Lines(1) + metrics_->Down(3),
          .frame_edge = metrics_->Across(6)};
}

/// Works out anew what the controls need; a window that has become too small grows.
void FormWindow::Measure() {
  layout_.emplace(form_, Sizes());
  // How many lines the menu bar takes depends on the width, and shows only then.
  bool grown = false;
  while (Grow()) grown = true;
  RECT own{};
  ::GetWindowRect(window_, &own);
  if (grown) PlaceAmid(own);
  Arrange();
}

bool FormWindow::Grow() {
  RECT now{};
  ::GetWindowRect(window_, &now);
  const Extent least = WholeSize();
  const int width = std::max(static_cast<int>(now.right - now.left), least.width);
  const int height = std::max(static_cast<int>(now.bottom - now.top), least.height);
  ::SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  RECT grown{};
  ::GetWindowRect(window_, &grown);
  return grown.right - grown.left > now.right - now.left ||
         grown.bottom - grown.top > now.bottom - now.top;
}

void FormWindow::Arrange() {
  if (!layout_) return;
  RECT client{};
  ::GetClientRect(window_, &client);
  widgets_->Arrange(layout_->Arrange({client.right, client.bottom}));
  ::RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

/// What is around the client area.
Extent FormWindow::Edges() const {
  RECT whole{}, client{};
  ::GetWindowRect(window_, &whole);
  ::GetClientRect(window_, &client);
  return {static_cast<int>(whole.right - whole.left - client.right),
          static_cast<int>(whole.bottom - whole.top - client.bottom)};
}

/// Of the window with all that it needs, as far as the screen has room.
Extent FormWindow::WholeSize() const {
  const RECT work = WorkArea(window_);
  const Extent edges = Edges();
  const Extent least = layout_->Least();
  return {std::min(least.width + edges.width, static_cast<int>(work.right - work.left)),
          std::min(least.height + edges.height, static_cast<int>(work.bottom - work.top))};
}

void FormWindow::Limit(MINMAXINFO& limits) const {
  if (!layout_) return;
  const Extent least = WholeSize();
  limits.ptMinTrackSize = {least.width, least.height};
}

/// Amid its owner, or the screen.
void FormWindow::PlaceOver(HWND owner) {
  RECT amid = WorkArea(owner == nullptr ? window_ : owner);
  if (owner != nullptr && ::IsIconic(owner) == FALSE) ::GetWindowRect(owner, &amid);
  PlaceAmid(amid);
}

/// As far as it then is wholly on the screen.
void FormWindow::PlaceAmid(const RECT& amid) {
  const RECT work = WorkArea(window_);
  RECT own{};
  ::GetWindowRect(window_, &own);
  const auto inside = [](LONG middle, LONG size, LONG begin, LONG end) {
    return static_cast<int>(std::max(begin, std::min(middle - size / 2, end - size)));
  };
  ::SetWindowPos(window_, nullptr,
                 inside((amid.left + amid.right) / 2, own.right - own.left, work.left, work.right),
                 inside((amid.top + amid.bottom) / 2, own.bottom - own.top, work.top, work.bottom),
                 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace vok::windows
