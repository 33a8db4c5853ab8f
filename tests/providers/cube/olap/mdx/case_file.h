// MDX cases as text files: a query, and its axes and cells or its failure.
//
//   case NAME
//   query
//   ...
//   axis 0
//   [Measures].[Amount]                 one position a line, members with " | " between
//   cells                               or "formatted"
//   10.5 | -                            axis 0 along the line; "-" is an empty cell
//
// or "failure" with the whole text instead of axes and cells. A line of "#" is a remark.
#pragma once

#include <string>
#include <vector>

#include "providers/cube/olap/mdx/result.h"

namespace vok::test {

struct MdxCase {
  std::string file;
  std::string name;
  std::string query;
  std::string expected;  ///< all lines from the first axis, or the failure, on
};

std::vector<MdxCase> ReadCases(const std::string& folder);
/// The answer in the words of a case file.
std::string Shown(const olap::MdxResult& result, bool formatted);

}  // namespace vok::test
