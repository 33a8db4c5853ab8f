// The patterns of "like", as Jet understands them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/locale.h"

namespace vok {

/// "*" any characters, "?" one, "#" one digit, "[a-z]" one of a list, "[!a-z]" one that is not in
/// it, "[]" nothing; all else means itself. Case does not count. A pattern without any of these is
/// a test for equality. Works on characters, never on their bytes.
class LikePattern {
 public:
  /// The locale must outlive the pattern. Fails with -2147217900 for a list that is not closed or a
  /// range that runs backwards.
  LikePattern(const Locale& locale, std::string_view pattern);

  bool Matches(std::string_view text) const;

 private:
  struct Range {
    std::string first;
    std::string last;
  };
  struct Element {
    enum class Kind { kLiteral, kAnyRun, kAnyOne, kDigit, kList };
    Kind kind = Kind::kLiteral;
    std::string literal;        // folded
    std::vector<Range> ranges;  // folded
    bool negated = false;
  };

  std::string TakeCharacter(std::string_view& rest) const;
  void ParseList(std::string_view list);
  static bool Fits(const Element& element, const std::string& character);

  const Locale& locale_;
  std::string pattern_;
  std::vector<Element> elements_;
  bool plain_ = true;
};

}  // namespace vok
