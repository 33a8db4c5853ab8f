// The component's own texts, in English, by number (texts/text_numbers.h).
#pragma once

#include <string>
#include <vector>

namespace vok {

/// "" for a number that has no text.
std::string StringTableText(int number);

/// Every number that has a text, ascending.
std::vector<int> StringTableNumbers();

}  // namespace vok
