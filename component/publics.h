// The process-wide values of the component: one instance per process, passed by reference.
//
// They keep their last values between calls. The calls of several threads take turns with them
// (call_turns.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "component/run_preview.h"
#include "cube/cube_state.h"
#include "env/environment.h"
#include "platform/query_stop.h"
#include "reports/error_report.h"
#include "settings/records.h"
#include "texts/language.h"

namespace vok {

/// What the last run did and how long its steps took, in milliseconds of the clock. A run that
/// ended early leaves 0 for the steps that it did not reach.
struct RunReport {
  std::string workbook;     ///< path of the workbook; "" when none was written
  bool whole = false;       ///< the workbook holds what all passes gave
  std::size_t queries = 0;  ///< sent to the cube; 0 when no period met its dates
  std::size_t rows = 0;     ///< rows written to it by all passes, without the labels
  RunPreview preview;       ///< of what the workbook holds
  bool stopped = false;     ///< ended because it was asked to
  int32_t code = 0;         ///< what the run returned
  /// Why it failed, each failure that was reported once; of a run that went well what it had to
  /// say. One line.
  std::string cause;
  uint32_t settings = 0;
  uint32_t cube = 0;  ///< connecting, probing and checking the measures
  uint32_t mdx = 0;   ///< building, logging and executing the queries
  uint32_t grid = 0;
  uint32_t writing = 0;  ///< the workbook
  uint32_t total = 0;    ///< the whole run
};

/// A part of a run that begins, and the share of the whole at its begin and end: from 0 to 1. The
/// shares are estimates.
struct RunStep {
  const char* name;  ///< "settings", "cube", "query", "workbook"
  double begin = 0;
  double end = 1;
};

struct Publics {
  Environment environment;
  Language language;
  StatusTexts status;
  CurrentSettings settings;
  CubeState cube;
  std::string help_file;  ///< of the component's windows; "" for none
  RunReport last_run;
  const QueryStop* stop = nullptr;  ///< by which the next run can be stopped; its caller's, or none
  std::string cube_limits;  ///< for the connection of the next run, such as "Max Memory=100;"
  /// Whether an old workbook stays until the next run's is whole. Else it is deleted first.
  bool keep_old_workbook = false;
  /// Called on the run's thread before each step; empty: nobody is told.
  std::function<void(const RunStep&)> on_step;
};

}  // namespace vok
