// The answer to a query in a form that both sides can give, and what differs between two of them.
#pragma once

#include <string>
#include <vector>

#include "platform/value.h"

namespace vok::interop {

struct Member {
  std::string unique_name;
  std::string caption;
  std::string level;  ///< unique name of the level
  friend bool operator==(const Member&, const Member&) = default;
};
using Tuple = std::vector<Member>;

/// Axes and cells, or the words of a failure.
struct Answer {
  std::string failure;
  std::vector<std::vector<Tuple>> axes;
  std::vector<Value> cells;            ///< nothing, a number, a text or an error; axis 0 fastest
  std::vector<std::string> formatted;  ///< the same cells in their formats

  /// Makes room for the cells of the axes.
  void SizeCells();
};

/// The first difference in words; "" when there is none. Numbers are equal by ==, failures and
/// errors of cells whatever their words are. A query that fails as a whole is equal to one with an
/// error in a cell. `formats`: the formatted cells are to agree as well.
std::string Difference(const Answer& server, const Answer& ours, bool formats);

/// One line per axis, and the cells row by row: as case files write an answer.
std::string Shown(const Answer& answer);

}  // namespace vok::interop
