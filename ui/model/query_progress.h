// A query that runs beside the main window, and the way to stop it.
//
// Controls: `fraProgress` with `lblProgress`, `prgQuery` and `cmdStop`, to be seen while it runs.
// What else can be used in the window is then disabled, and Escape and closing the window stop the
// query instead.
#pragma once

#include <optional>
#include <string>

#include "platform/query_stop.h"
#include "platform/value.h"
#include "ui/model/panel.h"
#include "ui/model/toolkit.h"

namespace vok {

class QueryProgress {
 public:
  QueryProgress(const WindowServices& services, Form& form);
  QueryProgress(const QueryProgress&) = delete;
  QueryProgress& operator=(const QueryProgress&) = delete;

  /// `frame` is `fraProgress`.
  void AddTo(Panel frame);

  /// What `clMe::RunQuery` gives, without message boxes: `Publics::last_run` has what failed.
  /// Returns when the query is over. An old workbook stays unless a whole new one takes its place.
  /// Failures are those of `Toolkit::RunBeside`; the window is as it was before, on every path.
  Value Run(std::string source, std::string periods, std::string output);

 private:
  class Running;
  void Stop();

  const WindowServices& services_;
  Form& form_;
  std::optional<QueryStop> stop_;  ///< while a query runs
};

}  // namespace vok
