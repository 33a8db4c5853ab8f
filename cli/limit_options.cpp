#include "cli/limit_options.h"

namespace vok::cli {

void LimitOptions::AddTo(CLI::App& command) {
  command.add_option("--max-cells", max_cells_,
                     "Most cells of the answer before NON EMPTY, and most tuples of a set");
  command.add_option("--memory", memory_, "Most megabytes that the query may take");
  command.add_option("--timeout", timeout_, "Most seconds that the query may take");
}

std::string LimitOptions::ConnectionText() const {
  std::string text;
  if (!max_cells_.empty()) text += "Max Cells=" + max_cells_ + ";";
  if (!memory_.empty()) text += "Max Memory=" + memory_ + ";";
  if (!timeout_.empty()) text += "Timeout=" + timeout_ + ";";
  return text;
}

}  // namespace vok::cli
