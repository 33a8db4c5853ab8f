// Sorted runs of facts on a disk, where memory is not to hold them all.
#pragma once

#include <memory>
#include <vector>

#include "platform/files.h"
#include "providers/cube/olap/build/column_spool.h"
#include "providers/cube/olap/build/fact_merger.h"
#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// What stays in memory of a run is a key of each some thousand. `plan` outlives it. Failures:
/// those of the file, such as a full disk.
template <typename Key>
class SpilledRuns : public FactRuns<Key> {
 public:
  SpilledRuns(const FactPlan& plan, std::unique_ptr<ScratchFile> file, unsigned threads);

  /// Puts runs that follow each other aside, as one.
  void Add(std::vector<FactRun<Key>> runs);
  /// What the values of all runs have in common, once all are there. To be called before those
  /// below, which give all values that form.
  std::vector<ValueFormat> Formats();

  std::vector<Key> Sample() const override;
  void Append(const Key* begin, const Key* end, FactRange<Key>& range) const override;

 private:
  /// Of the values of one run in one column.
  struct Values {
    ValueFormat format;
    Int128 magnitude = 0;  ///< what they add up to without their signs
    uint64_t largest = 0;  ///< without its sign
  };
  struct Run {
    ColumnSpool rows;
    std::vector<Key> sample;
    std::vector<Values> values;
  };

  void AppendRange(const FactRange<Key>& range, Run& run) const;
  uint64_t PlaceOf(Key key, const Run& run) const;
  std::vector<Key> KeysOf(const Run& run, uint64_t first, uint64_t last) const;
  ValueColumn ColumnOf(const Run& run, std::size_t index, uint64_t first, uint64_t last) const;

  const FactPlan& plan_;
  std::shared_ptr<SpoolFile> file_;
  unsigned threads_;
  std::vector<Run> runs_;
  std::vector<ValueFormat> formats_;
};

}  // namespace vok::olap
