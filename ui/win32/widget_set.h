// The widgets of a form in its dialog.
//
// The windows go with the dialog; what is said of them to screen readers goes with the set, which
// must go first.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "ui/model/form.h"
#include "ui/win32/form_layout.h"
#include "ui/win32/metrics.h"
#include "ui/win32/tooltips.h"
#include "ui/win32/widget.h"

namespace vok::windows {

/// The number of the window of a form's first control; the others follow. Beyond those of the
/// system's own buttons.
inline constexpr int kFirstControlId = 100;

class WidgetSet {
 public:
  /// Makes the windows of all controls but menus, those of the foot in `dialog`, the others in its
  /// part `panel`.
  WidgetSet(Form& form, HWND dialog, HWND panel, const Metrics& metrics);
  WidgetSet(const WidgetSet&) = delete;
  WidgetSet& operator=(const WidgetSet&) = delete;

  void SetMetrics(const Metrics& metrics);
  /// Shows what the controls say now. True when one of them may need other room than before.
  bool Refresh();
  /// Moves the windows that stand elsewhere.
  void Arrange(const std::map<const Control*, Area>& places);

  /// Menus have a number, too.
  int IdOf(const Control& control) const;
  /// nullptr for a number of none.
  const Control* ControlWith(int id) const;
  /// These are nullptr where there is no such widget. `part` is its window or one in it.
  Widget* With(int id) const;
  Widget* Of(HWND part) const;
  Widget* Of(const ControlId& id) const;

 private:
  bool Acts(const Control& control) const { return control.Enabled && IsShown(form_, control); }
  void KeepFocus() const;
  bool RefreshStates();
  void Make(std::size_t position, const Metrics& metrics);
  void MakeAll(const Metrics& metrics);

  Form& form_;
  HWND dialog_;
  HWND panel_;
  std::vector<std::unique_ptr<Widget>> widgets_;  ///< by the position of their controls
  std::map<const Control*, Area> places_;         ///< where they stand
  ToolTips tips_;
  SpokenNames names_;
};

}  // namespace vok::windows
