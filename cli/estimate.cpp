#include "cli/estimate.h"

#include <algorithm>
#include <cmath>

namespace vok::cli {
namespace {

constexpr double kLeastMeasured = 1;  // second, from which on a speed says something

}  // namespace

void Estimate::Tell(double begin, double end, double done, double now) {
  At(now);
  const bool is_new = begin != begin_ || end != end_;
  const double known = begin + (end - begin) * done;
  if (!is_new && known <= known_) return;
  if (is_new) began_ = now;
  begin_ = begin;
  end_ = end;
  known_ = known;
  told_ = now;
}

double Estimate::At(double now) {
  const double passed = now - asked_;
  asked_ = now;
  shown_ = std::clamp(shown_, known_, end_);
  if (passed <= 0) return shown_;
  double gone = (end_ - shown_) * passed / (passed + SecondsUntil(end_, now));
  const bool is_ahead = shown_ > known_ + Speed() * (now - told_);
  if (IsTelling() && is_ahead) gone = std::min(gone, Speed() * passed / 2);
  shown_ += gone;
  return shown_;
}

std::optional<double> Estimate::SecondsLeft(double now) const {
  if (told_ < kLeastMeasured || known_ <= 0) return {};
  return SecondsUntil(1, now);
}

/// Within the step, or of all before it where the step has told nothing; 0 where nothing is known.
double Estimate::Speed() const {
  if (IsTelling()) return (known_ - begin_) / (told_ - began_);
  return told_ > 0 ? begin_ / told_ : 0;
}

double Estimate::SecondsUntil(double end, double now) const {
  constexpr double kUnknown = 10;
  const double expected = Speed() > 0 ? (end - known_) / Speed() : 0;
  const double waited = now - told_;
  const bool is_measured = IsTelling() || told_ >= kLeastMeasured;
  return std::max(expected - waited, (is_measured ? 0 : kUnknown) + waited);
}

std::string TimeText(double seconds) {
  const auto whole = static_cast<long>(std::ceil(std::min(seconds, 1e6)));
  const std::string rest = std::to_string(whole % 60) + " s";
  return whole < 60 ? rest : std::to_string(whole / 60) + " min " + rest;
}

}  // namespace vok::cli
