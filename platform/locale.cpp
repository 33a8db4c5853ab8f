#include "platform/locale.h"

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "platform/utf8.h"

namespace vok {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

constexpr std::ptrdiff_t kShortestPrefix = 3;  // letters

constexpr std::array<std::string_view, 13> kPassedOver = {
    " ",      ".",      "-",      "'",      "\u00A0", "\u2019", "\u02BC",
    "\u05F3", "\u200E", "\u200F", "\u061C", "\u202F", "\u0307"};

/// Turkish tells two letters i apart by their dot, and their capitals are folded unlike them.
constexpr std::array<std::string_view, 2> kTurkishI = {"\u0130", "\u0131"};

/// How long the first of the marks is that the text begins with; 0 for none.
template <std::size_t N>
std::size_t LengthOfMark(std::string_view text, const std::array<std::string_view, N>& marks) {
  const auto mark = std::find_if(marks.begin(), marks.end(),
                                 [&](std::string_view each) { return text.starts_with(each); });
  return mark == marks.end() ? 0 : mark->size();
}

std::string Plain(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t passed = LengthOfMark(text, kPassedOver);
    const std::size_t i = LengthOfMark(text, kTurkishI);
    if (passed == 0) plain += i == 0 ? text.front() : 'i';
    text.remove_prefix(std::max({passed, i, std::size_t{1}}));
  }
  return plain;
}

std::ptrdiff_t LetterCount(std::string_view utf8) {
  return std::count_if(utf8.begin(), utf8.end(), StartsCharacter);
}

}  // namespace

bool EqualNoCase(const Locale& locale, std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b)) return EqualNoCaseAscii(a, b);
  return locale.FoldCase(a) == locale.FoldCase(b);
}

void MonthNames::Add(std::string_view folded_name, int month) {
  months_.emplace(Plain(folded_name), month);
}

std::optional<int> MonthNames::Named(std::string_view folded) const {
  const auto found = months_.find(Plain(folded));
  if (found == months_.end()) return std::nullopt;
  return found->second;
}

std::optional<int> MonthNames::NamedOrCutShort(std::string_view folded) const {
  if (const auto exact = Named(folded)) return exact;
  const std::string prefix = Plain(folded);
  if (LetterCount(prefix) < kShortestPrefix) return std::nullopt;
  std::optional<int> found;
  for (auto at = months_.lower_bound(prefix); at != months_.end() && at->first.starts_with(prefix);
       ++at) {
    if (found && *found != at->second) return std::nullopt;
    found = at->second;
  }
  return found;
}

}  // namespace vok
