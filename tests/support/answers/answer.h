// One side of a comparison, through the port that all engines answer, and what differs between the
// answers of two.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/cube.h"

namespace vok::test {

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

/// A line for each position, and one for each row of cells, with all digits of a number and, when
/// `formats` says so, what its format makes of it.
std::string Shown(const Answer& answer, bool formats);

/// The first line that differs, of both; "" when there is none. Failures and errors of cells are
/// equal with any words; a query that fails as a whole is equal to one with an error in a cell.
std::string Difference(const Answer& server, const Answer& ours, bool formats);

}  // namespace vok::test
