// What a cube file records of the tables that it was made of, so that a part of it can be read
// anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/cube/olap/storage/cuboids.h"
#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// The rows that led facts to the leaves of a hierarchy. Of a hierarchy with a table of its own
/// they are the keys alone.
struct RecordedRows {
  std::size_t width = 0;                           ///< fields of a row
  std::vector<std::optional<std::string>> fields;  ///< row by row; nothing for NULL
  std::vector<uint32_t> leaves;                    ///< of each row
};

/// By their fields, so that they do not tell in which order they came.
void Sort(RecordedRows& rows);

/// `number` / 10^`scale`.
struct ExactSum {
  Int128 number = 0;
  uint8_t scale = 0;

  friend bool operator==(const ExactSum& a, const ExactSum& b);
};

/// Brings the sum to that many decimal places at least; what does not fit is nothing then, and
/// stays so.
void AddTo(std::optional<ExactSum>& sum, Int128 number, uint8_t scale);

/// The facts of one leaf of the time hierarchy.
struct PeriodTotals {
  uint64_t facts = 0;
  std::vector<std::optional<ExactSum>> sums;  ///< of each value; nothing where it is not exact
};

struct CubeRecord {
  std::string schema;  ///< XML
  std::vector<RecordedRows> hierarchies = {};
  uint32_t time = kNoTime;                ///< the hierarchy of `totals`
  std::vector<PeriodTotals> totals = {};  ///< of each of its leaves
};

std::string BytesOf(const CubeRecord& record);
/// Failure "damaged", with the file's name.
CubeRecord ReadRecord(std::span<const std::byte> bytes, const std::string& file_name);

}  // namespace vok::olap
