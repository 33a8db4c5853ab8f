// The rows of a database server's answer, added to the slices that they belong to.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/row_text.h"
#include "providers/cube/olap/live/exact_column.h"
#include "providers/cube/olap/live/slice_batch.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "providers/cube/olap/storage/key_map.h"
#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {

class AnswerReader {
 public:
  /// Throws: a fact has this key, which leads to no leaf of the hierarchy.
  using FailForKey = std::function<void(uint32_t hierarchy, const std::string& key)>;

  /// To the statement of one batch. `expected`: the hierarchies whose keys the rows are to meet;
  /// `leaves`: those of the batch's group. All outlive the reader.
  AnswerReader(const StoredCube& cube, const SliceBatch& batch,
               const std::vector<uint32_t>& expected, const KeyMap* leaves, FailForKey fail);

  /// The next question of the batch.
  void AddQuestion(const FactQuery& query);
  /// Failures: of `FailForKey`; a sum that is not a number, or has more than 38 digits.
  void Take(RowText& rows);
  /// The columns of the first question whose columns were not taken yet.
  std::vector<FactColumn> TakeColumns();

 private:
  struct Growing {
    std::vector<ExactColumn> columns;
    std::vector<std::size_t> fields;  ///< where their values stand among those of a row
  };

  void AddRow(uint32_t member, uint32_t part, std::span<const Field> values, const RowText& rows);
  void CheckExpected(std::span<const Field> fields) const;
  /// Nothing for a row of leaves that were not asked for.
  std::optional<uint32_t> MemberOf(std::span<const Field> key);

  const StoredCube& cube_;
  const SliceBatch& batch_;
  const std::vector<uint32_t>& expected_;
  const KeyMap* leaves_;
  FailForKey fail_;
  const LeafLevels* levels_;     // of the group's hierarchy
  std::deque<Growing> growing_;  // of each question
  std::string joined_;
};

}  // namespace vok::olap
