// Windows, dialogs and threads of the system for the rules of the windows.
//
// All of it on one thread, the one that made the toolkit. While a window is open, messages of the
// thread's other windows go on as before, and a request to end the thread closes the window and
// stands afterwards. Nothing of it is left when the toolkit is gone.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hosts/windows/view/form_window.h"
#include "ui/toolkit.h"

namespace vok::windows {

class Win32Toolkit : public Toolkit {
 public:
  /// In front of our window that was shown last, else of the thread's active one. That window
  /// takes nothing meanwhile, and is as before afterwards whatever happens. Failures: those of
  /// making the window, and what a rule threw, which closes it.
  void ShowModal(Form& form) override;
  std::string PickFile(const FileDialog& dialog) override;
  void ShowHelp(const std::string& help_file) override;
  void OpenOnDesktop(const std::string& path) override;
  /// Automation objects that `work` makes must not outlive it.
  void RunBeside(const std::function<void()>& work) override;

 private:
  void Dispatch(MSG& message);
  void WaitFor(HANDLE done, class Errands& errands);

  std::vector<FormWindow*> open_;  ///< the one in front last
};

}  // namespace vok::windows
