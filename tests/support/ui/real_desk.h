// What the main window works on, all of it real except the person and the clock: settings folder,
// database, cube, workbooks in a temporary folder.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "native.h"
#include "providers/cube/olap/olap_provider.h"
#include "providers/database/sqlite/sqlite_database.h"
#include "providers/recordset/persisted_recordset.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "settings/set_reader.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failing_files.h"
#include "tests/support/memory_host.h"
#include "tests/support/ui/scripted_toolkit.h"
#include "ui/model/frm_periods.h"

namespace vok::test {

/// Waits a second for locks, not as long as it is told, so that a test need not; reads the table of
/// a language, too.
class DeskDatabase : public SqliteDatabase {
 public:
  DeskDatabase(Files& all, const Locale& country)
      : SqliteDatabase(all, country, [this](const std::string& path) { return jet(path); }),
        files_(all),
        locale_(country) {}
  std::unique_ptr<Connection> Open(const std::string& path, int32_t) override {
    return SqliteDatabase::Open(path, 1);
  }
  std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
    return recordset::OpenPersisted(files_, locale_, path);
  }
  OpenJetFile jet;

 private:
  Files& files_;
  const Locale& locale_;
};

/// A message under the product's name.
inline MessageBox Box(const std::string& text, MessageIcon icon = MessageIcon::kExclamation,
                      MessageButtons buttons = MessageButtons::kOk) {
  return {text, "VokCubeQ17", icon, buttons, "", 0};
}

struct RealDesk {
  explicit RealDesk(const std::string& country = "en_GB") : locale(country) {
    BuildInto(folder, SampleLedger());
    memory.registry.SetFolder(settings);
    files.CreateDirectory(settings);
  }

  /// Does with the window what saves the data source "Sales" and the period set "Half 1".
  void FillIn(Form& form) {
    form.SetText("comboDataSource", "Sales");
    form.SetText("txtVarnelMDB", "host.mdb");
    toolkit.picked = Cube();
    toolkit.in_window.emplace_back([](Form& selection) {
      selection.Click("ComCubeFile");
      selection.Click("cmdOk");
    });
    form.Click("cmdCube");
    toolkit.in_window.emplace_back([](Form& option) {
      for (int row = 0; row < kMoneySetCount; ++row) {
        option.Choose({"CmbMeas", row}, 0);
        option.Choose({"CmbQty", row}, 1);
      }
      option.Choose({"CmbMoney", 1}, 1);
      option.Click({"chkCalc", 12});
      option.SetText("txtCountMoney", "2");
      option.Click("cmdOk");
    });
    form.Click({"ComMeasure", 3});
    form.SetText("ComboPeriods", "Half 1");
    form.Click("chkFromD");
    form.Click("chkUntilD");
    Enter(form, 0, "Spring", "15/1/2009", "10/3/2009");
    Enter(form, 1, "Year", "5/4/2010", "1/6/2010");
    form.Click({"CheckItraPticha", 1});
  }
  static void Enter(Form& form, int row, const char* name, const char* from, const char* until) {
    form.SetText({"TextPeriod", row}, name);
    form.SetText({"txtDate1", row}, from);
    form.Leave({"txtDate1", row});
    form.SetText({"txtDate2", row}, until);
    form.Leave({"txtDate2", row});
  }
  std::unique_ptr<FrmPeriods> Open() {
    auto window = std::make_unique<FrmPeriods>(host, publics, toolkit);
    std::string host_database;
    window->Initialize(host_database);
    return window;
  }
  std::optional<PeriodSet> StoredPeriods(const std::string& name) const {
    return ReadEditedPeriods(host, publics.environment, name);
  }
  std::optional<DataSourceSetting> StoredSource(const std::string& name) const {
    return ReadEditedDataSource(host, publics.environment, name);
  }
  std::vector<MessageBox> TakeBoxes() { return std::exchange(memory.boxes.boxes, {}); }
  std::string Cube() const { return folder.File("sample.cub"); }

  TemporaryFolder folder;
  std::string settings = folder.File("settings");
  MemoryHost memory;
  NativeFiles disk;
  FailingFiles files{disk, Failure(failure_number::kDiskFull, "the disk is full")};
  NativeLocale locale;
  DeskDatabase database{files, locale};
  olap::OlapCubeProvider cube{files, locale};
  xlsx::XlsxSpreadsheet spreadsheet{files};
  Host host{{.folder = folder.path(), .language_table = {}, .executable_name = kExecutable},
            files,
            memory.registry,
            locale,
            memory.clock,
            memory.boxes,
            database,
            cube,
            spreadsheet};
  Publics publics;
  ScriptedToolkit toolkit;
};

}  // namespace vok::test
