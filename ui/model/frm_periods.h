// The main query window: a data source, a period set, and the run of the query that they make.
//
// Its controls are those of `DataSourceFields`, `PeriodDates`, `QueryProgress` and `RunResult`, and
// `ComboPeriods` (the set's name), `ComSaveSet`, `cmdDeleteSource`, `cmdDeletePeriods`, `txtOutput`
// (the workbook's path without its ending) with `cmdOutput`, `cmdQuery`, `cmdHelp`, `cmdClose`, and
// menus for the same commands. The title names the sets that are not saved. What goes wrong is
// shown in message boxes; only making the window can fail.
#pragma once

#include <string>
#include <vector>

#include "component/cl_me.h"
#include "ui/model/data_source_fields.h"
#include "ui/model/named_set.h"
#include "ui/model/panel.h"
#include "ui/model/period_dates.h"
#include "ui/model/query_progress.h"
#include "ui/model/run_result.h"
#include "ui/model/toolkit.h"

namespace vok {

class FrmPeriods : public QueryWindow {
 public:
  FrmPeriods(const Host& host, Publics& publics, Toolkit& toolkit);

  /// Loads the window; `DataBaseFileName`, where it is not empty, is the host database of a new
  /// data source. True when the settings database is there.
  Value Initialize(std::string& DataBaseFileName) override;
  void Show() override;
  Form& form() { return form_; }

  /// Saves the period set, then the data source and, when that was saved, its money sets. True when
  /// all was saved.
  bool SaveSettings();
  /// True when it was saved; otherwise after a report.
  bool SavePeriods();
  /// Shows the stored period set of that name, or of `ComboPeriods` for an empty one; an unknown
  /// name changes nothing and is false. Failures are reported.
  bool LoadPeriodSet(const std::string& name);

 private:
  void AddControls();
  /// Returns the container of the set's name.
  Panel AddPeriods(Panel panel);
  void AddMenus();
  void AddRules();
  void ListSets();
  void Delete(const char* combo, const char* kind);
  void RunQuery();
  void ShowRunResult(const Value::Array& parts);
  std::string KeyOfLast(const char* combo) const;
  void ChooseLastSets();
  std::string FailureText(const Value::Array& parts);
  std::string EmptyText() const;
  bool SaveSource();
  /// Asks whether to save what has changed, see `AskWhetherToSave`: false when it was cancelled or
  /// could not be saved.
  bool SaveIfWanted(int save, int leave);
  std::vector<std::string> ChangedSets() const;
  void ShowTitle();
  void Close();
  void TellAbout();
  void PickOutput();

  WindowServices services_;
  Form form_;
  std::string title_;  ///< without the changed sets
  DataSourceFields source_;
  PeriodDates dates_;
  QueryProgress progress_;
  RunResult result_;
  NamedSet source_set_;
  NamedSet period_set_;
};

}  // namespace vok
