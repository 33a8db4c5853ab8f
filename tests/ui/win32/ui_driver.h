// A person at the keyboard and the mouse, on a thread of its own.
#pragma once

#include <string>
#include <thread>

#include "system/windows/system_header.h"
#include "ui/model/form.h"

namespace vok::windows {

/// Waits for the window of the form to come to the front, then does what `acts` says. Titles are
/// those that the windows' own begin with. Letters are
/// typed; in braces stand keys ("{Tab}", "{Ctrl+S}"), "{click NAME}" on a control of the form,
/// "{wait TITLE}" for another window to come to the front, "{await NAME}" for a control of the form
/// to be seen, "{picture NAME}" of the window in front, "{close}" by the window's own X, "{end}"
/// as a program that is told to end.
class UiDriver {
 public:
  UiDriver(const Form& form, std::string acts);
  ~UiDriver() { thread_.join(); }

 private:
  void Act(const std::string& acts);
  void Do(const std::string& act);
  HWND ControlCalled(const std::string& name) const;
  void Await(const std::string& name);
  void Click(const std::string& name);

  const Form& form_;
  const std::wstring title_;  ///< as it was at first; a form may add to it
  std::thread thread_;
};

}  // namespace vok::windows
