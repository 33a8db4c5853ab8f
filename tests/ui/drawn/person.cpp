#include "tests/ui/drawn/person.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace vok::test {
namespace {

/// The first word and what comes after its blank.
std::pair<std::string, std::string> FirstWord(const std::string& text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  return {text.substr(0, blank), blank < text.size() ? text.substr(blank + 1) : ""};
}

void TakePicture(const std::string& name) {
  const char* const folder = std::getenv("VOKCUBE_SCREENSHOTS");
  if (folder != nullptr) front::Shoot(std::string(folder) + "/" + name + ".png");
  const std::string misfits = front::Misfits();
  if (!misfits.empty()) GiveUp("shot " + name + ": cannot be seen or read out: " + misfits);
}

}  // namespace

std::string Replaced(std::string script, const std::string& what, const std::string& by) {
  for (auto at = script.find(what); at != script.npos; at = script.find(what, at + by.size())) {
    script.replace(at, what.size(), by);
  }
  return script;
}

std::deque<Step> StepsOf(const std::string& script) {
  std::deque<Step> steps;
  for (std::size_t at = 0; at < script.size();) {
    const std::size_t end = std::min(script.find_first_of("\n;", at), script.size());
    const std::size_t first = std::min(script.find_first_not_of(' ', at), end);
    Step step;
    step.line = script.substr(first, end - first);
    std::tie(step.verb, step.what) = FirstWord(step.line);
    if (step.verb == "see") std::tie(step.what, step.text) = FirstWord(step.what);
    if (!step.line.empty()) steps.push_back(step);
    at = end + 1;
  }
  return steps;
}

bool Holds(const Step& step) {
  if (!front::IsReady()) return false;
  if (step.verb == "front") return front::Title().find(step.what) != std::string::npos;
  if (step.verb == "focus") return front::Focus() == step.what;
  if (step.verb == "await") return front::Shows(step.what);
  if (step.verb == "lack") return !front::Shows(step.what);
  if (step.verb == "see") return front::Shows(step.what) && front::Text(step.what) == step.text;
  return step.verb != "click" || front::Shows(step.what);
}

void Do(const Step& step) {
  if (step.verb == "press") front::Press(step.what);
  if (step.verb == "type") front::Type(step.what);
  if (step.verb == "click") front::Click(step.what);
  if (step.verb == "scroll") front::Scroll(step.what);
  if (step.verb == "close") front::Close();
  if (step.verb == "shot") TakePicture(step.what);
}

void GiveUp(const std::string& step) {
  const std::string control = StepsOf(step).front().what;
  std::fprintf(stderr, "\"%s\" does not come true in \"%s\"; focus: %s; %s: \"%s\"\n", step.c_str(),
               front::Title().c_str(), front::Focus().c_str(), control.c_str(),
               front::Text(control).c_str());
  std::_Exit(1);
}

}  // namespace vok::test
