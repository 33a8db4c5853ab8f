#include "ui/win32/form_window.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "system/windows/utf16.h"
#include "ui/win32/dpi_and_theme.h"

namespace vok::windows {
namespace {

using enum ControlType;

/// The fields' own colour with some red, on which texts are read as before, in high contrast, too.
COLORREF ErrorBack() {
  constexpr int kRed = 2, kAll = 9;  // parts
  const COLORREF own = ::GetSysColor(COLOR_WINDOW);
  const auto mixed = [](int part, int red) { return (part * (kAll - kRed) + red * kRed) / kAll; };
  return RGB(mixed(GetRValue(own), 255), mixed(GetGValue(own), 0), mixed(GetBValue(own), 0));
}

/// A dialog without controls.
struct EmptyTemplate {
  DLGTEMPLATE dialog{};
  WORD menu = 0, window_class = 0, title = 0;
};

}  // namespace

FormWindow::FormWindow(Form& form) : form_(form) {}

FormWindow::FormWindow(Form& form, HWND owner) : FormWindow(form) {
  const OwnLook look;
  MakeDialog(owner);
  HandleDensityOurselves(window_);
  UseDensity();
  panel_.emplace(window_, form_.RightToLeft);
  widgets_.emplace(form_, window_, panel_->window(), *metrics_);
  menu_.emplace(form_, window_, [this](const Control& control) { return widgets_->IdOf(control); });
  WriteControls();
  Measure();
  PlaceOver(owner);
  if (!form_.Remembered || !RecallPlace(form_.Name, window_, place_)) return;
  needed_ = {};  // it may need more than it did, in another language
  Measure();
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
  if (window_ != nullptr && form_.Remembered) {
    place_.maximized = ::IsZoomed(window_) != FALSE;
    RememberPlace(form_.Name, window_, place_);
  }
  widgets_.reset();
  if (window_ != nullptr) ::DestroyWindow(window_);
}

void FormWindow::Show() {
  ::ShowWindow(window_, place_.maximized ? SW_SHOWMAXIMIZED : SW_SHOW);
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
    case WM_MOUSEWHEEL:
      return panel_ ? ::SendMessageW(panel_->window(), message, wparam, lparam) : FALSE;
    case kSplit:
      place_.split = static_cast<int>(wparam);
      Arrange();
      return TRUE;
    case kScrolled:
      Arrange();
      return TRUE;
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
  Reveal(*taken);
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
  Reveal(*widget);
}

/// What is below the body for want of room comes into sight with its frame.
void FormWindow::Reveal(const Widget& widget) {
  const Control* outer = &widget.control();
  if (panel_->Shows(widget.window())) return;
  while (!outer->Container.empty()) outer = &form_.At(outer->Container);
  if (outer->Region == Region::kBeside) panel_->Reveal(widgets_->Of(outer->Id())->window());
  panel_->Reveal(widget.window());
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
    const std::wstring title = Utf16(caption_);
    ::SetWindowTextW(window_, (form_.RightToLeft ? ReadByItself(title) : title).c_str());
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
  ::SetBkColor(canvas, ErrorBack());
  ::SetTextColor(canvas, ::GetSysColor(COLOR_WINDOWTEXT));
  ::SetDCBrushColor(canvas, ErrorBack());
  return reinterpret_cast<INT_PTR>(::GetStockObject(DC_BRUSH));
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
          .dense_gap = metrics_->Pixels(1),
          .margin = metrics_->Across(7),
          .frame_top = metrics_->Lines(1) + metrics_->Down(3),
          .frame_edge = metrics_->Across(6)};
}

/// Works out anew what the controls need; the window grows where they need more than before. One
/// that the person made smaller stays so.
void FormWindow::Measure() {
  layout_.emplace(form_, Sizes());
  const Extent before = needed_;
  bool grown = false;
  // How many lines the menu bar takes depends on the width, and shows only then.
  while (Grow(before)) grown = true;
  RECT own{};
  ::GetWindowRect(window_, &own);
  if (grown) PlaceAmid(window_, own);
  Arrange();
}

bool FormWindow::Grow(Extent before) {
  RECT now{};
  ::GetWindowRect(window_, &now);
  needed_ = WholeSize();
  const auto grown = [](LONG is, int needed, int was) {
    return needed > was ? std::max(static_cast<int>(is), needed) : static_cast<int>(is);
  };
  const int width = grown(now.right - now.left, needed_.width, before.width);
  const int height = grown(now.bottom - now.top, needed_.height, before.height);
  ::SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  RECT after{};
  ::GetWindowRect(window_, &after);
  return after.right - after.left > now.right - now.left ||
         after.bottom - after.top > now.bottom - now.top;
}

void FormWindow::Arrange() {
  if (!layout_) return;
  RECT client{};
  ::GetClientRect(window_, &client);
  const int foot = layout_->FootHeight();
  panel_->Place({0, 0, client.right, std::max(0, static_cast<int>(client.bottom) - foot)},
                [this](int width) { return layout_->LeastPage(width); });
  const Extent page = panel_->page(), offset = panel_->offset();
  panel_->SetSplitter(layout_->Splitter(page, place_.split));
  FormLayout::Places places = layout_->ArrangePage(page, place_.split);
  for (auto& [control, place] : places) {
    place.left -= offset.width;
    place.top -= offset.height;
  }
  places.merge(layout_->ArrangeFoot({client.right, client.bottom}));
  widgets_->Arrange(places);
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
  const int height = static_cast<int>(work.bottom - work.top);
  const bool scrolls = least.height + edges.height > height;
  const int width = least.width + (scrolls ? ::GetSystemMetrics(SM_CXVSCROLL) : 0) + edges.width;
  return {std::min(width, static_cast<int>(work.right - work.left)),
          std::min(least.height + edges.height, height)};
}

void FormWindow::Limit(MINMAXINFO& limits) const {
  if (!layout_) return;
  constexpr int kLetters = 40, kLines = 8;
  const Extent whole = WholeSize();
  limits.ptMinTrackSize = {std::min(whole.width, metrics_->Letters(kLetters)),
                           std::min(whole.height, metrics_->Lines(kLines) + layout_->FootHeight())};
}

/// Amid its owner, or the screen.
void FormWindow::PlaceOver(HWND owner) {
  RECT amid = WorkArea(owner == nullptr ? window_ : owner);
  if (owner != nullptr && ::IsIconic(owner) == FALSE) ::GetWindowRect(owner, &amid);
  PlaceAmid(window_, amid);
}

}  // namespace vok::windows
