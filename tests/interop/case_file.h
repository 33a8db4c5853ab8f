// Queries as text files, asked of the embedded engine in every build and of a server beside it by
// scripts/test --interop.
//
//   case NAME
//   SELECT …                            the query, over as many lines as it needs
//   differs: REASON                     only where our answer is another than the server's
//
// A line "catalog NAME" gives the schema for all cases after it; a line of "#" is a remark. Our
// answers stand in cases.answers, after a line "case FILE/NAME" each, as `Shown` writes them.
#pragma once

#include <string>
#include <vector>

namespace vok::interop {

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

}  // namespace vok::interop
