// How far a command is, for one who waits: on one scale from 0 to 100 %.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "cli/estimate.h"

namespace vok::cli {

/// On a terminal a line of standard error, after the first second, that is written over. On
/// anything else nothing, or a line each 10 seconds where that was asked for. What is printed while
/// it stands there takes its place. Several threads may tell it.
class ProgressLine {
 public:
  /// `on_pipe`: also where standard error is not a terminal. `what` is done until something else is
  /// told.
  explicit ProgressLine(bool on_pipe, std::string what = {});
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  /// Takes the line off the terminal.
  ~ProgressLine();

  /// The step takes the share from `begin` to `end` of the whole, of which `done` is over, each
  /// from 0 to 1.
  void Show(const std::string& what, double begin, double end, double done);

 private:
  using Clock = std::chrono::steady_clock;

  void Work();
  double Now() const;
  std::string Text();

  bool terminal_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::string what_;
  Estimate estimate_;
  Clock::time_point start_ = Clock::now();
  std::thread thread_;  ///< last: it uses the others
};

}  // namespace vok::cli
