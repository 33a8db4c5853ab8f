// The sheet that a run must leave, worked out from the plain data by plain loops.
#pragma once

#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/end_to_end/csv.h"
#include "tests/end_to_end/data_set.h"

namespace vok::end_to_end {

inline constexpr size_t kPeriods = 12;

/// A date that is not set.
inline constexpr Date kNoDate =
    std::chrono::year{1899} / std::chrono::December / std::chrono::day{30};

struct Period {
  std::string name;
  Date from = kNoDate, until = kNoDate;
  bool opening_balance = false;
  std::string measure, quantity;
};

struct Report {
  std::string cube;
  std::string ledger;
  std::array<Period, kPeriods> periods;
};

/// A data source's money sets paired with a period set, from settings.json.
Report ReadReport(const std::filesystem::path& settings, const std::string& data_source,
                  const std::string& period_set);

/// A period meets no date of the cube: a run must fail on it.
struct NoDate : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The rows of the sheet "Data"; none when a run writes no workbook. Throws NoDate.
std::vector<Row> ExpectedSheet(const DataSet& data, const Report& report);

}  // namespace vok::end_to_end
