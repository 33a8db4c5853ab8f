// Somebody at the windows: keys and mouse, one thing after the other, and what is to be seen.
//
// A script has a line for each step, made in the window that is in front by then:
//
//   press Ctrl+S | Tab | …      type TEXT      click CONTROL
//   see CONTROL TEXT            text of a field, label, button or box; a check box's state 0, 1, 2
//   focus CONTROL               front TITLE    title of the window in front, or the text of a box
//   says WORDS                  stand in the text of the box in front
//   await CONTROL | TITLE       until it is to be seen
//   close                       by the window's own button
//   shot NAME                   a picture in the folder $VOKCUBE_SCREENSHOTS, where it is set
//
// A control is named as in the form: "txtDate1(0)".
#pragma once

#include <QtWidgets/QWidget>
#include <deque>
#include <string>

namespace vok::test {

class UiDriver {
 public:
  /// What the script says is done as soon as a window waits. Call it before the window is shown.
  explicit UiDriver(const std::string& script);
  /// A script that is not at its end fails the test; one that leaves a window open ends it.
  ~UiDriver();
  UiDriver(const UiDriver&) = delete;
  UiDriver& operator=(const UiDriver&) = delete;

  static QWidget* Front();
  /// nullptr, and a failure of the test, where there is none in the window in front.
  static QWidget* Find(const std::string& control);

 private:
  void Await();
  void Next();
  void Do(const std::string& step);

  QObject life_;
  std::deque<std::string> steps_;
  int loops_ = 0;  ///< event loops that were running when the step in work began; 0: none is
};

}  // namespace vok::test
