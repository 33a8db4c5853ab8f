// Which months of a cube are read anew, and which keys of the fact table lie in them.
//
// A month is a number here: its year times 12, and 0 for January.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/table_server.h"
#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/schema.h"

namespace vok::olap {

/// All months from one on, or some, or, where neither is given, those whose totals differ.
struct MonthChoice {
  std::optional<int> since = {};
  std::vector<int> months = {};

  bool IsAutomatic() const { return !since && months.empty(); }
  bool Has(int month) const;
};

/// The month that members name, from the names of its year and of itself; `member` is for the text
/// of the failure.
using MonthOf = std::function<int(const std::string& year, const std::string& month,
                                  const std::string& member)>;

/// Among the hierarchies of all dimensions, the first with years, months and a table, whose keys
/// facts have in a column.
std::optional<uint32_t> HierarchyOfMonths(const CubeSchema& schema);

/// The month of each leaf of that hierarchy.
std::vector<int> MonthsOfLeaves(const NewHierarchy& hierarchy, const MonthOf& month_of);

/// The ranges of the hierarchy's keys that lead to the `wanted` leaves; the last one has no end
/// where `is_open` and no later key is there. Failure, naming `table`, unless the keys are whole
/// numbers, or dates that are all written in one way.
std::vector<KeyRange> RangesOf(const RecordedRows& keys, const std::vector<bool>& wanted,
                               bool is_open, const std::string& table);

/// "2024-11".
std::string ShownMonth(int month);

}  // namespace vok::olap
