// Queries as text files, asked on both sides.
//
//   case NAME
//   SELECT …                            the query, over as many lines as it needs
//   differs: REASON                     only where we differ on purpose
//   axis 0: [Measures].[Amount];        our own answer then, as `Shown` writes it
//   cells: 10.5
//
// A line "catalog NAME" gives the schema for all cases after it; a line of "#" is a remark.
#pragma once

#include <string>
#include <vector>

namespace vok::interop {

struct Case {
  std::string name;  ///< with the file's
  std::string catalog;
  std::string query;
  std::string reason;    ///< why the answers differ; empty: they agree
  std::string expected;  ///< our own answer where they differ
};

/// std::runtime_error for a file that cannot be read, a case without a query and a name used twice.
std::vector<Case> ReadCases(const std::string& folder);

}  // namespace vok::interop
