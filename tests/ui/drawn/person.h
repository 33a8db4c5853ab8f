// Somebody at the windows of a toolkit: keys and mouse, one thing after the other, and what is to
// be seen.
//
// A script has a step on each line, or before each ";". A step is made in the window that is in
// front by then, as soon as that takes keys; what is to be seen is waited for:
//
//   press Ctrl+S | Tab | …    type TEXT      click CONTROL     close: by the window's own button
//   scroll LIST         to the side, as far as its first page goes
//   see CONTROL TEXT    text of a field, label, button or box; a check box is 0, 1, or 2 for grayed
//   focus CONTROL       has the focus
//   await CONTROL       is to be seen          lack CONTROL        is not
//   front TITLE         how the title of the window in front, or the text of a box, begins
//   shot NAME           all of the window can be seen or scrolled to, and what can be used has a
//                       name and a role for screen readers; a picture in the folder
//                       $VOKCUBE_SCREENSHOTS, where it is set
//
// A control is named as in the form: "txtDate1(0)". A step that cannot be made, or a window that
// stays open after the last, ends the program with a word about it.
#pragma once

#include <deque>
#include <memory>
#include <string>

namespace vok::test {

/// Works as soon as a window waits: it is made before the window is shown, and goes after it.
class Person {
 public:
  explicit Person(const std::string& script);
  ~Person();
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

 private:
  class AtWork;
  std::unique_ptr<AtWork> work_;
};

/// What stands in the place of one text of a script: every `what` in it becomes `by`.
std::string Replaced(std::string script, const std::string& what, const std::string& by);

struct Step {
  std::string line, verb, what;
  std::string text;  ///< that `see` wants
};

std::deque<Step> StepsOf(const std::string& script);
/// Whether the window in front is as the step says; a step that is something to do can be done.
bool Holds(const Step& step);
void Do(const Step& step);
[[noreturn]] void GiveUp(const std::string& step);

/// The hands and eyes of each toolkit's person, at the window in front.
namespace front {

/// It is there and takes keys.
bool IsReady();
std::string Title();
std::string Focus();
std::string Text(const std::string& control);
bool Shows(const std::string& control);
void Press(const std::string& keys);
void Type(const std::string& text);
void Click(const std::string& control);
void Scroll(const std::string& control);
void Close();
/// What of the window in front cannot be seen: texts that are longer than their boxes, and what
/// leaves its container or the screen; or be read out by a screen reader, where the test can ask.
/// "" when all can.
std::string Misfits();
/// Into the file without regard to the environment.
void Shoot(const std::string& file);

}  // namespace front
}  // namespace vok::test
