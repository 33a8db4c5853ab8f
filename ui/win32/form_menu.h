// The menu bar of a form and its keys.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/model/form.h"
#include "ui/win32/controls_header.h"

namespace vok::windows {

class FormMenu {
 public:
  /// `id_of` gives the number of the command that each entry sends. The window and the form
  /// outlive the menu.
  FormMenu(const Form& form, HWND window, std::function<int(const Control&)> id_of);
  FormMenu(const FormMenu&) = delete;
  FormMenu& operator=(const FormMenu&) = delete;
  ~FormMenu();

  /// Shows the menus as they are now.
  void Refresh();
  /// Whether the message is a key of an entry, which then is chosen.
  bool Translate(MSG& message) const;

 private:
  HMENU Read(const std::string& container);
  void Append(HMENU menu, const Control& entry);
  std::vector<std::string> Entries() const;

  const Form& form_;
  HWND window_;
  std::function<int(const Control&)> id_of_;
  std::vector<std::string> shown_;
  HACCEL keys_ = nullptr;
};

/// Such as "F5" or "Ctrl+Shift+S"; the virtual key 0 for a text that names none.
ACCEL ReadShortcut(const std::string& text);

}  // namespace vok::windows
