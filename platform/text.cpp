#include "platform/text.h"

#include <algorithm>

#include "platform/utf8.h"

namespace vok {
namespace {

struct Step {
  std::size_t bytes;
  std::size_t units;
};

Step NextCharacter(std::string_view rest) {
  const std::size_t bytes = CharacterSize(rest);
  if (bytes == 0) return {1, 1};
  return {bytes, bytes == 4 ? std::size_t{2} : std::size_t{1}};
}

}  // namespace

std::size_t Utf16Length(std::string_view utf8) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const Step step = NextCharacter(utf8.substr(at));
    at += step.bytes;
    units += step.units;
  }
  return units;
}

std::string_view Utf16Prefix(std::string_view utf8, std::size_t units) {
  std::size_t at = 0;
  std::size_t used = 0;
  while (at < utf8.size()) {
    const Step step = NextCharacter(utf8.substr(at));
    if (used + step.units > units && !(at == 0 && units > 0)) break;
    at += step.bytes;
    used += step.units;
  }
  return utf8.substr(0, at);
}

std::string_view TrimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

char LowerAscii(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) letter = LowerAscii(letter);
  return lower;
}

bool EqualNoCaseAscii(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

}  // namespace vok
