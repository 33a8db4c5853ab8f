// How far work of unknown length is, as well as can be told.
#pragma once

#include <optional>
#include <string>

namespace vok::cli {

/// Goes from 0 to 1 without standing still and without going back, so that it comes to the end of a
/// step with the work; where that lasts longer than its speed told, ever more slowly. Times are
/// seconds from the start and do not go back.
class Estimate {
 public:
  /// The step takes the share from `begin` to `end` of the whole, of which `done` is over.
  void Tell(double begin, double end, double done, double now);
  /// Of the whole.
  double At(double now);
  /// Nothing before some of the work was measured.
  std::optional<double> SecondsLeft(double now) const;

 private:
  bool IsTelling() const { return known_ > begin_ && told_ > began_; }
  double Speed() const;
  double SecondsUntil(double end, double now) const;

  double begin_ = 0;
  double end_ = 1;
  double known_ = 0;  ///< of the whole, as it was last told
  double began_ = 0;  ///< when the step was told first
  double told_ = 0;   ///< when `known_` was
  double shown_ = 0;
  double asked_ = 0;
};

/// Such as "2 min 5 s" or "40 s".
std::string TimeText(double seconds);

}  // namespace vok::cli
