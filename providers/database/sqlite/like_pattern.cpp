#include "providers/database/sqlite/like_pattern.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

std::string_view TakeRaw(std::string_view& rest) {
  const std::string_view character = Utf16Prefix(rest, 1);
  rest.remove_prefix(character.size());
  return character;
}

[[noreturn]] void ThrowBadPattern(std::string_view pattern, const std::string& why) {
  throw Failure(failure_number::kSyntax, "The pattern '" + std::string(pattern) +
                                             "' is not understood: " + why +
                                             ". Write [[] for the character itself.");
}

}  // namespace

LikePattern::LikePattern(const Locale& locale, std::string_view pattern)
    : locale_(locale), pattern_(pattern) {
  using Kind = Element::Kind;
  plain_ = pattern.find_first_of("*?#[") == std::string_view::npos;
  for (std::string_view rest = pattern; !rest.empty() && !plain_;) {
    switch (rest[0]) {
      case '*':
        if (elements_.empty() || elements_.back().kind != Kind::kAnyRun) {
          elements_.push_back({Kind::kAnyRun, {}, {}});
        }
        break;
      case '?':
        elements_.push_back({Kind::kAnyOne, {}, {}});
        break;
      case '#':
        elements_.push_back({Kind::kDigit, {}, {}});
        break;
      case '[': {
        const std::size_t end = rest.find(']');
        if (end == std::string_view::npos) ThrowBadPattern(pattern_, "a \"[\" is not closed");
        ParseList(rest.substr(1, end - 1));
        rest.remove_prefix(end);
        break;
      }
      default:
        elements_.push_back({Kind::kLiteral, TakeCharacter(rest), {}});
        continue;
    }
    rest.remove_prefix(1);
  }
}

std::string LikePattern::TakeCharacter(std::string_view& rest) const {
  return locale_.FoldCase(TakeRaw(rest));
}

void LikePattern::ParseList(std::string_view list) {
  if (list.empty()) return;
  Element element{Element::Kind::kList, {}, {}};
  if (list.size() > 1 && list[0] == '!') {
    element.negated = true;
    list.remove_prefix(1);
  }
  while (!list.empty()) {
    const std::string first = TakeCharacter(list);
    std::string last = first;
    if (list.size() > 1 && list[0] == '-') {
      list.remove_prefix(1);
      last = TakeCharacter(list);
      if (last < first) ThrowBadPattern(pattern_, "a range of a list runs backwards");
    }
    element.ranges.push_back({first, last});
  }
  elements_.push_back(std::move(element));
}

bool LikePattern::Fits(const Element& element, const std::string& character) {
  switch (element.kind) {
    case Element::Kind::kAnyRun:
    case Element::Kind::kAnyOne:
      return true;
    case Element::Kind::kLiteral:
      return element.literal == character;
    case Element::Kind::kDigit:
      return character.size() == 1 && character[0] >= '0' && character[0] <= '9';
    case Element::Kind::kList:
      break;
  }
  const bool listed = std::any_of(
      element.ranges.begin(), element.ranges.end(),
      [&](const Range& range) { return range.first <= character && character <= range.last; });
  return listed != element.negated;
}

// One place to come back to is enough: what a run took can only grow, and only the last run's need.
bool LikePattern::Matches(std::string_view text) const {
  if (plain_) return EqualNoCase(locale_, text, pattern_);
  std::vector<std::string> characters;
  while (!text.empty()) characters.push_back(TakeCharacter(text));

  const std::size_t none = elements_.size();
  std::size_t element = 0;
  std::size_t at = 0;
  std::size_t run = none;
  std::size_t run_end = 0;
  while (at < characters.size()) {
    if (element < none && elements_[element].kind == Element::Kind::kAnyRun) {
      run = element++;
      run_end = at;
    } else if (element < none && Fits(elements_[element], characters[at])) {
      ++element;
      ++at;
    } else if (run != none) {
      element = run + 1;
      at = ++run_end;
    } else {
      return false;
    }
  }
  while (element < none && elements_[element].kind == Element::Kind::kAnyRun) ++element;
  return element == none;
}

}  // namespace vok
