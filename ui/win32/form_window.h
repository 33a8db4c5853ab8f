// A form as a dialog of the system's.
//
// It draws the form, tells it what the user did, and after each event writes what differs. It
// holds no rule. A rule may close the form, show a message or open another window in the middle of
// an event. No exception leaves a window procedure: the first one closes the window and is kept
// for the program that shows it.
#pragma once

#include <exception>
#include <memory>
#include <optional>

#include "ui/model/form.h"
#include "ui/win32/controls_header.h"
#include "ui/win32/form_layout.h"
#include "ui/win32/form_menu.h"
#include "ui/win32/metrics.h"
#include "ui/win32/scroll_panel.h"
#include "ui/win32/widget_set.h"
#include "ui/win32/window_place.h"

namespace vok::windows {

class FormWindow {
 public:
  /// Makes the window, not to be seen yet; `owner` may be nullptr. Failure 445 where there is no
  /// screen for it.
  FormWindow(Form& form, HWND owner);
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow();

  HWND window() const { return window_; }
  void Show();
  /// Until a rule closes the form, something fails, or the system takes the window away.
  bool IsOpen() const { return window_ != nullptr && form_.Visible && !failure_; }
  /// Takes a message of this thread, to any window.
  void Dispatch(MSG& message);
  /// Shows the form as it is now.
  void Refresh();
  /// Throws what was kept.
  void ThrowFailure() const;

 private:
  explicit FormWindow(Form& form);
  void MakeDialog(HWND owner);

  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void OnCommand(int id, int code);
  INT_PTR Colour(UINT message, WPARAM wparam, LPARAM lparam);
  void Click(const Control& control);
  void Cancel();

  template <typename Event>
  void Tell(Event event);
  bool SettleFocus();
  bool LeaveField();
  void MoveFocus();
  void Reveal(const Widget& widget);

  Widget* WidgetOf(HWND part) const;
  void WriteControls();

  void UseDensity();
  void MoveToDensity(const RECT& place);
  LayoutSizes Sizes() const;
  void Measure();
  bool Grow(Extent before);
  void Arrange();
  Extent Edges() const;
  Extent WholeSize() const;
  void PlaceOver(HWND owner);
  void Limit(MINMAXINFO& limits) const;

  Form& form_;
  HWND window_ = nullptr;
  std::unique_ptr<Metrics> metrics_;
  std::optional<ScrollPanel> panel_;
  std::optional<WidgetSet> widgets_;
  std::optional<FormLayout> layout_;
  std::optional<FormMenu> menu_;
  Extent needed_;  ///< of the whole window
  RememberedPlace place_;
  std::string caption_;
  Widget* focused_ = nullptr;  ///< where the form knows the focus to be
  bool writing_ = false;
  std::exception_ptr failure_;
};

}  // namespace vok::windows
