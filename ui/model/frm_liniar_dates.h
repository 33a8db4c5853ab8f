// The dates wizard: a small modal window that fills a run of periods with consecutive months,
// quarters, half years or years.
//
// Controls: `lstInterval`, `txtDate` (0 the start, 1 the end), `txtP1` and `txtP2` (first and last
// period number), `cmdOk`, `cmdCancel`.
#pragma once

#include "settings/linear_dates.h"
#include "ui/model/toolkit.h"

namespace vok {

class frmLiniarDates {
 public:
  explicit frmLiniarDates(const WindowServices& services);
  frmLiniarDates(const frmLiniarDates&) = delete;
  frmLiniarDates& operator=(const frmLiniarDates&) = delete;

  /// Written in before the window is shown, read back after it. Only the periods of the run change.
  DateList FromDateArr;
  DateList UntilDateArr;

  /// Shows the window; true when it was closed with OK. A failure of the filling is reported there
  /// and ends it.
  bool ShowForm();
  Form& form() { return form_; }

 private:
  void AddControls();
  void DateChanged(int index);
  void PeriodChanged(const char* field, int16_t& number);
  void Ok();

  const WindowServices& services_;
  Form form_;
  LinearDates run_;
};

}  // namespace vok
