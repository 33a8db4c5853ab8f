// A question to the person, in a small window with a button for each thing that can happen.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ui/model/toolkit.h"

namespace vok {

/// Numbers are those of texts.
struct Question {
  int title;                                   ///< what is asked
  int heading;                                 ///< of the rows
  std::vector<std::vector<std::string>> rows;  ///< what it is asked about, in columns
  std::vector<int> answers;                    ///< the first one is the default button
};

/// The position of the answer; nothing for "Cancel", which Escape and closing the window choose,
/// too. Controls: `cmdAnswer`, an array, and `cmdCancel`.
std::optional<std::size_t> Ask(const WindowServices& services, const Question& question);

}  // namespace vok
