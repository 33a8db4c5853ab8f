// The months of the year by name, as people write them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vok {

/// Names of one or more languages. Blanks, points, hyphens, apostrophes and marks of writing
/// direction do not count. All texts are case folded by the caller.
class MonthNames {
 public:
  /// `month`: 1 to 12. A name that is there already keeps its month.
  void Add(std::string_view folded_name, int month);

  /// The month of exactly this name.
  std::optional<int> Named(std::string_view folded) const;
  /// That, or the month whose names alone begin with the text, from three letters on.
  std::optional<int> NamedOrCutShort(std::string_view folded) const;

 private:
  std::map<std::string, int> months_;
};

}  // namespace vok
