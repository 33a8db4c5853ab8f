// One run of a saved query for the command line, and what became of it in words.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/print.h"
#include "platform/query_stop.h"

namespace vok::cli {

struct RunRequest {
  std::string data_source;
  std::string periods;
  std::string output;
};

struct RunOutcome {
  RunRequest request;
  int32_t code = 0;
  /// Why it failed, why it left no workbook, or else what there is to say; "" for nothing.
  std::string text;
  RunReport report;
};

/// Runs it in the session, with the limits at the end of the connection text. An old workbook stays
/// until the new one is whole. Every failure is an outcome.
RunOutcome RunSaved(Session& session, const RunRequest& request, const std::string& limits,
                    const QueryStop& stop);

/// The path of the workbook that the run writes, where it writes one.
std::string WorkbookOf(const Files& files, const RunRequest& request);

/// What is wrong with an output path, as the end of a sentence; "" for nothing.
std::string NamesFile(const std::string& path);

/// The program's for that outcome: 0, 1 failed, 3 nothing written, 130 stopped.
int ExitStatus(const RunOutcome& outcome);
/// Of two statuses.
int WorseStatus(int a, int b);

/// {"workbook", "rows", "milliseconds": {of each step}, "code", "cause"}
Json Document(const RunOutcome& outcome);
/// On one line: the local time, the code, the names in quotes, and the text or what was written.
std::string LogLine(const RunOutcome& outcome, Date now);

}  // namespace vok::cli
