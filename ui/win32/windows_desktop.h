// The desktop of Windows: dialogs and threads of the system for the rules of the windows.
//
// All windows and boxes are on one thread, the one that opened the desktop. While a window is open,
// messages of the thread's other windows go on as before, and a request to end the thread closes
// the window and stands afterwards. Nothing of it is left when the desktop is gone.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "system/windows/windows_message_boxes.h"
#include "ui/model/toolkit.h"
#include "ui/win32/form_window.h"
#include "ui/win32/task_queue.h"

namespace vok::windows {

class WindowsDesktop : public Desktop {
 public:
  /// In front of our window that was shown last, else of the thread's active one. That window
  /// takes nothing meanwhile, and is as before afterwards on every path. Failures: those of
  /// making the window, and what a rule threw, which closes it.
  void ShowModal(Form& form) override;
  std::string PickFile(const FileDialog& dialog) override;
  void OpenOnDesktop(const std::string& path) override;
  MessageAnswer Show(const vok::MessageBox& box) override;
  std::string Name() const override { return "Windows"; }
  void CopyText(const std::string& text) override;
  std::string Recall(const std::string& name) override;
  void Remember(const std::string& name, const std::string& text) override;
  /// Automation objects that `work` makes must not outlive it.
  void RunBeside(const std::function<void()>& work) override;

 private:
  void RefreshAll() const;
  void Dispatch(MSG& message) const;
  void WaitFor(HANDLE done, TaskQueue& tasks) const;

  DWORD thread_ = ::GetCurrentThreadId();
  WindowsMessageBoxes boxes_;
  TaskQueue* tasks_ = nullptr;     ///< of the work that goes on beside the windows
  std::vector<FormWindow*> open_;  ///< the one in front last
};

}  // namespace vok::windows
