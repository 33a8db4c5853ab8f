// A star of CSV files as plain lists: what a report needs of it and nothing more. Reads the
// schema's obvious columns only; it refuses what it does not understand.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vok::end_to_end {

using Date = std::chrono::sys_days;

/// Amounts are whole numbers of millionths, so that sums are exact.
inline constexpr int kDecimals = 6;
__extension__ typedef __int128 Exact;

struct Fact {
  Date date;  // the month's first day where the cube has no days
  size_t line;
  std::string ledger;
  std::string opening_key;  // empty where the cube has no opening balances
  std::map<std::string, std::optional<Exact>> measures;
};

struct DataSet {
  std::vector<Date> dates;            // ascending
  std::vector<std::string> captions;  // of the report lines, in the report's order
  bool has_opening_balance = false;
  std::vector<Fact> facts;
};

/// Throws std::runtime_error that says what is missing or not understood.
DataSet ReadDataSet(const std::filesystem::path& folder, const std::string& cube);

/// "-12.5" in millionths; nothing for an empty text.
std::optional<Exact> ParseExact(const std::string& text);

/// The double nearest to the exact sum.
double ToDouble(Exact millionths);

}  // namespace vok::end_to_end
