// The desktop on Qt 6 Widgets.
#pragma once

#include <memory>
#include <vector>

#include "ui/model/toolkit.h"
#include "ui/qt/form_window.h"

namespace vok::qt {

class QtDesktop : public Desktop {
 public:
  /// Uses the host program's QApplication, or makes one that stays for good. Failure 445 where
  /// there is no screen, the host program's application has no widgets, or this is not its thread.
  QtDesktop();

  void ShowModal(Form& form) override;
  std::string PickFile(const FileDialog& dialog) override;
  void OpenOnDesktop(const std::string& path) override;
  std::string Name() const override;
  void CopyText(const std::string& text) override;
  std::string Recall(const std::string& name) override;
  void Remember(const std::string& name, const std::string& text) override;
  void RunBeside(const std::function<void()>& work) override;
  MessageAnswer Show(const MessageBox& box) override;

 private:
  MessageAnswer ShowHere(const MessageBox& box);
  void ShowHelp(const std::string& help_file);
  /// The window that waits for what is shown next; nullptr for none.
  QWidget* Owner() const;
  /// What rules changed before they show something else is to be seen meanwhile.
  void RefreshAll();

  std::vector<FormWindow*> open_;  ///< the last one in front
};

}  // namespace vok::qt
