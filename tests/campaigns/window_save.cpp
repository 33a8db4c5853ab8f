// Saves what it changed in the main window, as a person would: window_save FOLDER, or only
// the period set: window_save FOLDER periods. The screen is left out; settings, files and messages
// are those of this system.
#include <iostream>

#include "hosts/system/system_host.h"
#include "platform/failure.h"
#include "tests/support/ui/scripted_toolkit.h"
#include "ui/frm_periods.h"

namespace {

void ChangeText(vok::Form& form, const vok::ControlId& field, const std::string& text) {
  form.SetText(field, text);
  form.Leave(field);
}

bool ChangeAndSave(const std::string& folder, bool periods_alone) {
  const vok::SystemHost system(folder);
  vok::Publics publics;
  vok::test::ScriptedToolkit toolkit;
  vok::FrmPeriods window(system.host(), publics, toolkit);
  std::string host_database;
  window.Initialize(host_database);
  window.form().Choose("comboDataSource", 0);
  window.form().Choose("ComboPeriods", 0);
  ChangeText(window.form(), "txtVarnelMDB", "changed.mdb");
  ChangeText(window.form(), {"TextPeriod", 0}, "Changed");
  return periods_alone ? window.SavePeriods() : window.SaveSettings();
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return count > 1 && ChangeAndSave(arguments[1], count > 2) ? 0 : 1;
  } catch (...) {
    std::cerr << vok::CurrentFailure().description() << '\n';
    return 1;
  }
}
