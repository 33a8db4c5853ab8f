// What is asked of a table of a database server: one statement, said without its language.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vok {

struct TableName {
  std::string name;
  std::string schema = {};  ///< "": where the server looks by itself
  bool operator==(const TableName&) const = default;
};

/// "sales.orders", or the name alone.
inline std::string ShownName(const TableName& table) {
  return table.schema.empty() ? table.name : table.schema + "." + table.name;
}

/// How the values of rows are put together; NULL counts for none of them.
enum class Gathering { kNone, kSum, kCount, kLeast, kLargest };

struct AskedColumn {
  std::string name;  ///< "" where rows are counted, also those of NULL alone
  Gathering gathering = Gathering::kNone;
};

/// Keys from `low` up to `high`, both among them; without `high` all from `low` on.
struct KeyRange {
  std::string low;
  std::string high = {};
};

/// Rows whose columns have one of these keys.
struct KeyCondition {
  std::vector<std::string> columns;
  std::vector<KeyRange> ranges = {};  ///< of one column alone
  /// The text of each column; nothing: NULL.
  std::vector<std::vector<std::optional<std::string>>> keys = {};
};

struct TableQuestion {
  TableName table;
  /// Where the values of some are put together there is a row for each combination of the others.
  std::vector<AskedColumn> columns;
  std::vector<KeyCondition> where = {};  ///< rows that meet each of these take part
  bool once = false;                     ///< rows that are alike come as one
  /// A field after those of the columns: the number of the first of these that the rows meet. Rows
  /// of different ones are put together apart.
  std::vector<KeyCondition> buckets = {};
  /// A field for each, after all others: a key of rows that take part and do not meet it, or NULL.
  std::vector<KeyCondition> expected = {};
  uint64_t most_rows = 0;  ///< of the answer; one more is sent when there are more. 0: any number
};

/// All rows, as they are.
inline TableQuestion RowsOf(const TableName& table, const std::vector<std::string>& columns) {
  TableQuestion question{table, {}};
  for (const std::string& column : columns) question.columns.push_back({column});
  return question;
}

inline bool IsGathered(const TableQuestion& question) {
  for (const AskedColumn& column : question.columns) {
    if (column.gathering != Gathering::kNone) return true;
  }
  return question.once;
}

/// The number of fields of a row.
inline std::size_t WidthOf(const TableQuestion& question) {
  return question.columns.size() + (question.buckets.empty() ? 0 : 1) + question.expected.size();
}

}  // namespace vok
