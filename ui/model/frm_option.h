// The money-set options window: thirteen rows of money set, measure, quantity measure and whether
// the measure is calculated; and how many of them count.
//
// Controls, each an array of thirteen: `CmbMoney`, `CmbMeas`, `CmbQty`, `chkCalc`. One each:
// `txtCountMoney`, `cmdOk`, `cmdCancel`.
#pragma once

#include "cube/discovery.h"
#include "settings/records.h"
#include "ui/model/panel.h"
#include "ui/model/toolkit.h"

namespace vok {

class FrmOption {
 public:
  /// `choices` fill the drop-down lists.
  FrmOption(const WindowServices& services, const MeasureChoices& choices);
  FrmOption(const FrmOption&) = delete;
  FrmOption& operator=(const FrmOption&) = delete;

  /// Shows the money sets of the setting, the focus on row `row`. True when the user closed the
  /// window with OK: they are then in the setting. A money set that was not defined and stays empty
  /// stays NULL.
  bool ShowForm(DataSourceSetting& setting, int row = 0);
  Form& form() { return form_; }

 private:
  static void AddRow(Panel& rows, int row, const MeasureChoices& choices);
  void CountChanged();
  void ShowRows(const DataSourceSetting& setting);
  void ReadRows(DataSourceSetting& setting) const;

  const WindowServices& services_;
  Form form_;
  bool confirmed_ = false;
};

}  // namespace vok
