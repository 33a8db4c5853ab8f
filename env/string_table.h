// The component's own texts, in English, by number (env/text_numbers.h).
#pragma once

#include <string>

namespace vok {

/// "" for a number that has no text.
std::string StringTableText(int number);

}  // namespace vok
