// A form with a control of every type, which writes down what it is told.
#pragma once

#include <functional>
#include <string>

#include "ui/model/form.h"

namespace vok::windows {

class SampleForm : public Form {
 public:
  SampleForm();

  /// What happened, such as "date=1; left date; clicked ok".
  std::string Told() const { return told_; }
  /// Adds a rule to the writing down.
  void Rule(FormEvent event, const std::string& name, std::function<void()> rule);

 private:
  void AddFields();
  void AddButtons();
  void Note(const std::string& what);

  std::string told_;
};

}  // namespace vok::windows
