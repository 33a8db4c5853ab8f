// The desktop whose windows tests/ui/drawn tries: that of Windows.
#pragma once

#include "ui/win32/windows_desktop.h"

namespace vok::test {

/// While it lives a person knows the form's controls by their names.
struct KnownForm {
  explicit KnownForm(const Form& form);
  KnownForm(const KnownForm&) = delete;
  KnownForm& operator=(const KnownForm&) = delete;
  ~KnownForm();
};

/// The window of the form's control of that number.
inline HWND PartOf(HWND dialog, int id) {
  const HWND in_foot = ::GetDlgItem(dialog, id);
  return in_foot != nullptr ? in_foot : ::GetDlgItem(::GetDlgItem(dialog, windows::kPanelId), id);
}

class DrawnDesktop : public windows::WindowsDesktop {
 public:
  void ShowModal(Form& form) override {
    const KnownForm known(form);
    WindowsDesktop::ShowModal(form);
  }
  /// Parts of windows, and what they are drawn with, that there are in this process.
  static int PartsLeft() {
    return static_cast<int>(::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS) +
                            ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS));
  }
};

}  // namespace vok::test
