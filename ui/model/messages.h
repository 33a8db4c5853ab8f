// Message boxes of the windows, and questions in small windows with a button for each answer.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reports/error_report.h"
#include "ui/model/toolkit.h"

namespace vok {

/// An empty title is the platform's own.
MessageAnswer ShowMessage(const WindowServices& services, const std::string& text,
                          const std::string& title = {}, MessageIcon icon = MessageIcon::kNone,
                          MessageButtons buttons = MessageButtons::kOk);

/// Opens a file or folder on the desktop; what is in the way of that is told in a message.
void OpenOrTell(const WindowServices& services, const std::string& path);

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

/// Numbers are those of texts.
struct Question {
  int title;                                   ///< what is asked
  int heading;                                 ///< of the rows
  std::vector<std::vector<std::string>> rows;  ///< what it is asked about, in columns
  std::vector<int> answers;                    ///< the first one is the default button
};

/// The position of the answer; nothing for "Cancel", which Escape and closing the window choose,
/// too. Controls: `cmdAnswer`, an array, and `cmdCancel`.
std::optional<std::size_t> Ask(const WindowServices& services, const Question& question);

}  // namespace vok
