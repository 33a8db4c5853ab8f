// Message boxes of the windows.
#pragma once

#include <string>

#include "reports/error_report.h"
#include "ui/model/toolkit.h"

namespace vok {

/// An empty title is the platform's own.
MessageAnswer ShowMessage(const WindowServices& services, const std::string& text,
                          const std::string& title = {}, MessageIcon icon = MessageIcon::kNone,
                          MessageButtons buttons = MessageButtons::kOk);

/// Runs a procedure of a window; true when it ended well. A failure is reported as `report` says.
template <typename Procedure>
bool RunReported(const WindowServices& services, const ErrorReport& report, Procedure procedure) {
  try {
    procedure();
    return true;
  } catch (...) {
    ShowErrorReport(services.host, CurrentFailure(), report);
    return false;
  }
}

}  // namespace vok
