// The data source in the main query window: its fields, and what fills, checks and saves them.
//
// Controls: `comboDataSource` (its name), `txtVarnelMDB` with `cmdVarnelMDB`, `TxtFileName` and
// `txtCubeName` with `cmdCube`, `CmbObs`, `txtActFile` with `cmdActFile`, `cmdOptions`; per money
// set `TextMoney` (the member that it is), `TextMeasure`, `TextQty` and `ComMeasure` (opens the
// options at it), arrays of thirteen; `cmdCopyMeasure` gives all of them the measures of the first.
//
// The money sets themselves are kept here; the options window edits them.
#pragma once

#include <string>

#include "cube/discovery.h"
#include "settings/records.h"
#include "ui/model/panel.h"
#include "ui/model/toolkit.h"

namespace vok {

class DataSourceFields {
 public:
  /// Adds the rules to the form, which goes with this object.
  DataSourceFields(const WindowServices& services, Form& form);
  DataSourceFields(const DataSourceFields&) = delete;
  DataSourceFields& operator=(const DataSourceFields&) = delete;

  void AddTo(Panel panel);
  static void AddHeadingsTo(Panel panel, GridCell cell);
  /// What money set `row` is and measures, in `cell` and the three after it.
  static void AddMoneyTo(Panel panel, GridCell cell, int row);

  /// Shows the stored data source of that name, or of `comboDataSource` for an empty one; an
  /// unknown name changes nothing and is false. Measures that the cube lacks are marked and told in
  /// one message. Failures are reported.
  bool INIDataSource(const std::string& name);

  /// Saves what is shown without its money sets. False when nothing was saved: after a message when
  /// a field is missing, which is marked, after a report when it failed. A data source without a
  /// name gets one.
  bool SaveDataSourceInfo();
  /// Saves the money sets. Failures pass to the caller.
  void SaveMoneyMeasures() const;
  /// What is entered except the name, as one text, to tell whether it changed.
  std::string Entered() const;

  /// Marks the fields' labels that a data source needs. Part of the form's load, after the texts.
  void MarkNeededLabels();
  /// Marks the measures that the cube lacks; false when there is none.
  bool MarkMissingMeasures() { return !MissingMeasures().empty(); }

  /// The fields as they stand.
  DataSourceSetting Read() const;

 private:
  static Control& AddPath(Panel& panel, GridCell cell, const char* label, int text,
                          const char* field);
  void AddRules();
  void Show(const DataSourceSetting& setting);
  void ShowMeasures();
  std::vector<std::string> MissingMeasures();
  void TellMissingMeasures();
  /// Marks what a data source needs and has not; the first gets the focus. Their names, each on
  /// a line; "" for none.
  std::string MarkMissingFields();
  void MarkMeasure(int row, bool missing);
  void UpdObsList();
  MeasureChoices SetCmbMeas2();
  void ChooseCube();
  void CubeFileLeft();
  void ChooseCatalog(const QelCatalogs& cubes);
  void EditMoneySets(int row);
  void CopyFirstMeasure();
  void PickInto(const char* field);

  const WindowServices& services_;
  Form& form_;
  std::string cube_file_;      ///< as its cubes were last looked for
  DataSourceSetting setting_;  ///< its money sets are the ones being edited
};

}  // namespace vok
