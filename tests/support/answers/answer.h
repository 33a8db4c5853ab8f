// Written queries and how they are answered: one side of a comparison, through the port that all
// engines answer, and what differs between the answers of two.
//
// The queries stand in text files. The embedded engine is asked in every build, a server beside it
// by scripts/test --interop.
//
//   case NAME
//   SELECT …                            the query, over as many lines as it needs
//   differs: REASON                     only where our answer is another than the server's
//
// A line "catalog NAME" gives the schema for all cases after it; a line of "#" is a remark. Our
// answers stand in cases.answers, after a line "case FILE/NAME" each, as `Shown` writes them.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

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

struct Case {
  std::string name;  ///< with the file's
  std::string catalog;
  std::string query;
  std::string reason;  ///< why the answers differ; empty: they agree
  std::string answer;  ///< ours; empty: not recorded yet
};

/// std::runtime_error for a line before the first case, a case without a query and a name used
/// twice.
std::vector<Case> ReadCases(const std::string& folder);

}  // namespace vok::test
