// What a run of the main window left: where the workbook is, its first rows and the money of each
// period.
//
// Controls: `fraResult`, to be seen from the first run on, with `txtResult` (the workbook's path,
// or that there is none), `lblResultRows`, `cmdOpenWorkbook`, `cmdOpenFolder`, `lvwRows` and
// `chtMoney`. What cannot be opened is told in a message.
#pragma once

#include <string>

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

  /// Shows what `Publics::last_run` says. A workbook that is not whole could not be removed.
  void Show();

 private:
  std::string RowsText(const RunReport& report) const;
  void ShowRows(const RunPreview& preview);
  void ShowMoney(const std::vector<MoneyTotal>& money);
  void OpenWorkbook();
  void Open(const std::string& path);

  const WindowServices& services_;
  Form& form_;
  std::string workbook_;  ///< its whole path; "" for none
};

}  // namespace vok
