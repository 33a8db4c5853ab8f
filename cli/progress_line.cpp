#include "cli/progress_line.h"

#include <cstdio>
#include <iostream>
#include <system_error>
#include <utility>

#include "cli/terminal.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kOnTerminal{500};
constexpr milliseconds kOnPipe{10'000};

constexpr milliseconds kQuick{1000};
constexpr const char* kRestOfLine = "\033[K";

}  // namespace

ProgressLine::ProgressLine(bool on_pipe, std::string what)
    : terminal_(ErrorsAreShown()), what_(std::move(what)) {
  if (!terminal_ && !on_pipe) return;
  try {
    thread_ = std::thread([this] { Work(); });
  } catch (const std::system_error&) {  // then nobody is told
  }
}

ProgressLine::~ProgressLine() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  changed_.notify_all();
  if (!thread_.joinable()) return;
  thread_.join();
  if (terminal_) std::cerr << kRestOfLine << std::flush;
}

void ProgressLine::Show(const std::string& what, double begin, double end, double done) {
  const std::lock_guard lock(mutex_);
  what_ = what;
  estimate_.Tell(begin, end, done, Now());
}

// The cursor goes back to the line's begin, so that what others print is not joined to it.
void ProgressLine::Work() {
  std::unique_lock lock(mutex_);
  Clock::time_point next = start_ + (terminal_ ? kQuick : kOnPipe);
  while (!changed_.wait_until(lock, next, [this] { return over_; })) {
    std::cerr << (terminal_ ? Text() + kRestOfLine + "\r" : Text() + '\n') << std::flush;
    next += terminal_ ? kOnTerminal : kOnPipe;
  }
}

double ProgressLine::Now() const {
  return std::chrono::duration<double>(Clock::now() - start_).count();
}

std::string ProgressLine::Text() {
  const double now = Now();
  const double done = estimate_.At(now);
  char percent[16];
  std::snprintf(percent, sizeof percent, "%6.2f %%", done * 100);
  std::string text = percent + std::string("  ") + OneLine(what_);
  if (const auto left = estimate_.SecondsLeft(now)) text += ", about " + TimeText(*left) + " left";
  return text;
}

}  // namespace vok::cli
