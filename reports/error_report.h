// What a procedure that catches a failure does with it: the error report, shown in a message box
// and written nowhere.
#pragma once

#include <cstdint>
#include <string>

#include "platform/failure.h"
#include "platform/host.h"

namespace vok {

/// What the reporting procedure adds to the failure. Empty texts are left out of the report. Every
/// field has its default, so that a caller names those that it gives.
struct ErrorReport {
  std::string Extra = {};
  std::string FunctionName = {};
  std::string ModuleName = {};
  std::string HelpFile = {};
  int32_t HelpContext = 0;  ///< below 1: the box has no help
};

/// The report's text. A report with a help context but no help file gets the product's name as its
/// `HelpFile`.
std::string ErrorReportText(const Failure& failure, ErrorReport& report,
                            const ComponentInfo& component);

/// Shows the report in a box with the critical icon. A query that was stopped is not an error and
/// shows nothing. The boxes are told the failure first.
void ShowErrorReport(const Host& host, const Failure& failure, ErrorReport report);

/// The process-wide texts of the last error, for a host program's status line.
struct StatusTexts {
  std::string LastError;
  std::string LastErrorSource;
};

void ClearError(StatusTexts& texts);

}  // namespace vok
