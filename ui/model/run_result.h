// What a run of the main window left: where the workbook is, its first rows and the money of each
// period; or why there is none, in full.
//
// Controls: `fraResult`, to be seen from the first run on, with `txtResult` (the workbook's path),
// `lblResultRows`, `cmdOpenWorkbook`, `cmdOpenFolder`, `cmdCopyResult`, `lvwRows`, `chkChart` and
// `chtMoney`, or `lblCause` in the place of rows and chart. What cannot be opened is told in a
// message.
#pragma once

#include <string>
#include <vector>

#include "component/publics.h"
#include "ui/model/panel.h"
#include "ui/model/toolkit.h"

namespace vok {

class RunResult {
 public:
  RunResult(const WindowServices& services, Form& form);
  RunResult(const RunResult&) = delete;
  RunResult& operator=(const RunResult&) = delete;

  void AddTo(Panel window);

  /// Shows what `Publics::last_run` says, and `cause` where that is not "". A workbook that is not
  /// whole could not be removed.
  void Show(const std::string& cause);

 private:
  std::string RowsText(const RunReport& report) const;
  void ShowParts(bool written, const std::string& cause);
  void ShowRows(const RunPreview& preview, const std::vector<std::string>& formats);
  void ShowMoney(const std::vector<MoneyTotal>& money, const std::vector<std::string>& formats);
  void AddBars(const std::vector<MoneyTotal>& money, const std::vector<std::string>& formats,
               std::vector<Bar>& bars) const;
  std::string MoneyOf(const MoneyTotal& period) const;
  std::string HeadingOf(const MoneyTotal& period, bool is_money) const;
  const MoneySetEntry& SetOf(int16_t period) const;
  void OpenWorkbook();
  void Copy();

  const WindowServices& services_;
  Form& form_;
  std::string workbook_;  ///< its whole path; "" for none
};

}  // namespace vok
