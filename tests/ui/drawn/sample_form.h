// A form with a control of every type that windows have, which writes down what it is told.
#pragma once

#include <functional>
#include <string>

#include "ui/model/form.h"

namespace vok::test {

class SampleForm : public Form {
 public:
  SampleForm();

  /// What happened, such as "date=1; left date; clicked ok".
  std::string Told() const { return told_; }
  /// Adds a rule to the writing down.
  void Rule(FormEvent event, const std::string& name, std::function<void()> rule);

 private:
  Control& Put(const char* name, ControlType type, const char* caption, const char* container,
               GridCell cell = {});
  void AddFields();
  void AddLists();
  void AddButtons();
  void Note(const std::string& what);

  std::string told_;
};

}  // namespace vok::test
