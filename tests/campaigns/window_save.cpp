// Changes something in the main window and saves it, as a person would:
//   window_save FOLDER [periods|source]
//
// both the period set and the data source, or the one alone, which leaves the other where it stands
// in the list. The screen is left out; settings, files and messages are those of this system. A
// message ends it, with status 1.
#include <iostream>
#include <string>

#include "hosts/composition/system_host.h"
#include "platform/failure.h"
#include "settings/set_reader.h"
#include "settings/set_writer.h"
#include "tests/support/ui/scripted_toolkit.h"
#include "ui/model/frm_periods.h"

namespace {

constexpr char kChanged[] = "changed.mdb";

/// Who is told that something went wrong does not press the next button.
class Told : public vok::MessageBoxes {
 public:
  vok::MessageAnswer Show(const vok::MessageBox& box) override {
    throw vok::Failure(vok::failure_number::kUnspecified, box.text);
  }
};

void ChangeText(vok::Form& form, const vok::ControlId& field, const std::string& text) {
  form.SetText(field, text);
  form.Leave(field);
}

/// As the window does where the period set could not be saved.
bool SaveSourceAlone(const vok::Host& host, const vok::Environment& environment,
                     const vok::Form& form) {
  auto source = vok::ReadEditedDataSource(host, environment, form.Text("comboDataSource"));
  source->VarnelMDB = kChanged;
  vok::SaveDataSourceInfo(host, environment, *source);
  vok::SaveMoneyMeasures(host, environment, *source);
  return true;
}

bool ChangeAndSave(const std::string& folder, const std::string& what) {
  Told told;
  const vok::SystemHost system(folder, &told);
  vok::Publics publics;
  vok::test::ScriptedToolkit toolkit;
  vok::FrmPeriods window(system.host(), publics, toolkit);
  std::string host_database;
  window.Initialize(host_database);
  window.form().Choose("comboDataSource", 0);
  window.form().Choose("ComboPeriods", 0);
  if (what == "source") return SaveSourceAlone(system.host(), publics.environment, window.form());
  ChangeText(window.form(), {"TextPeriod", 0}, "Changed");
  if (what == "periods") return window.SavePeriods();
  ChangeText(window.form(), "txtVarnelMDB", kChanged);
  return window.SaveSettings();
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return count > 1 && ChangeAndSave(arguments[1], count > 2 ? arguments[2] : "") ? 0 : 1;
  } catch (...) {
    std::cerr << vok::CurrentFailure().description() << '\n';
  }
  return 1;
}
