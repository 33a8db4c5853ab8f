// One side of the comparison, through the port that both engines answer, and what differs
// between the answers of two.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/cube.h"

namespace vok::interop {

/// Axes and cells, or the words of a failure.
struct Answer {
  std::string failure;
  std::unique_ptr<Cellset> cellset;
};

/// Connections of one engine, by the name of a schema's file without its ending.
class Side {
 public:
  explicit Side(CubeProvider& provider) : provider_(provider) {}

  void Open(const std::string& catalog, const std::string& connection_string);
  /// A query that is refused is an answer. Failures: what keeps a query from being asked at all.
  Answer Ask(const std::string& catalog, const std::string& mdx) const;

 private:
  CubeProvider& provider_;
  std::map<std::string, std::unique_ptr<CubeConnection>> catalogs_;
};

/// The first difference in words; "" when there is none. Numbers are equal by ==, failures and
/// errors of cells with any words. A query that fails as a whole is equal to one with an
/// error in a cell. `formats`: the formatted cells are to agree as well.
std::string Difference(const Answer& server, const Answer& ours, bool formats);

/// One line per axis, and the cells row by row: as case files write an answer.
std::string Shown(const Answer& answer);

}  // namespace vok::interop
