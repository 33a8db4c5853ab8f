// Slices of a live cube that one statement answers.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/fact_store.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// Questions that differ in their measures, and in the leaves of the time hierarchy, alone.
struct SliceBatch {
  std::vector<std::size_t> questions;        ///< indexes of what was asked
  std::vector<uint32_t> measures;            ///< of all of them, ascending
  std::vector<std::vector<IdRange>> leaves;  ///< of each hierarchy; of the time all that take part
  std::optional<FactQuery::Group> group;
  /// The leaves of the time, cut so that each question takes whole parts; one part when nothing is
  /// cut.
  std::vector<std::vector<IdRange>> parts;
  /// For each question: the parts that it takes, ascending.
  std::vector<std::vector<uint32_t>> parts_of_question;
};

/// Leaves without a restriction are empty there, too. `time`: the hierarchy that questions may
/// differ in.
std::vector<SliceBatch> BatchesOf(std::span<const FactQuery* const> questions,
                                  const CubeModel& model, std::optional<uint32_t> time);

}  // namespace vok::olap
