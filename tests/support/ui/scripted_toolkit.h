// A toolkit without a screen: a test says beforehand what the user does in each window.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ui/model/toolkit.h"

namespace vok::test {

/// Each window that is shown takes the next of `in_window`, and is closed after it.
class ScriptedToolkit : public Toolkit {
 public:
  void ShowModal(Form& form) override {
    shown.push_back(form.Name);
    form.Visible = true;
    if (!in_window.empty()) {
      const auto act = in_window.front();
      in_window.pop_front();
      act(form);
    }
    form.Visible = false;
  }
  std::string PickFile(const FileDialog& dialog) override {
    dialogs.push_back(dialog);
    folders.push_back(std::filesystem::current_path().string());
    return picked;
  }
  void OpenOnDesktop(const std::string& path) override { opened.push_back(path); }
  std::string Name() const override { return "Paper 1"; }
  void CopyText(const std::string& text) override { copied = text; }
  std::string Recall(const std::string& name) override { return kept[name]; }
  void Remember(const std::string& name, const std::string& text) override { kept[name] = text; }
  void RunBeside(const std::function<void()>& work) override {
    if (in_run) in_run();
    work();
  }

  std::deque<std::function<void(Form&)>> in_window;
  std::function<void()> in_run;  ///< what the user does when a query has just begun
  std::string picked;
  std::vector<std::string> shown;
  std::vector<FileDialog> dialogs;
  std::vector<std::string> folders;  ///< the current one as each dialog was shown
  std::vector<std::string> opened;
  std::string copied;
  std::map<std::string, std::string> kept;
};

}  // namespace vok::test
