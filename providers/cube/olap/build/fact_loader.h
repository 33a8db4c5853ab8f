// Reading a cube's facts from their table.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/cube/olap/build/cube_record.h"
#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/kept_facts.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

/// The share of a step in the building of one cube.
struct Share {
  double begin;
  double end;
};
inline constexpr Share kDimensions{0, 0.01}, kReading{0.01, 0.7}, kSorting{0.7, 0.85},
    kWriting{0.85, 0.92}, kAddingUp{0.92, 1};

using Progress = std::function<void(const std::string& what, Share share, double done)>;

struct LoadedFacts {
  uint64_t fact_count = 0;
  NewFacts facts;
  std::vector<std::string> bad_rows;  ///< what is wrong with each that was left out
  std::vector<PeriodTotals> totals;   ///< of the leaves that the options name
};

/// Rows of the facts that cannot be read: the description is that of the first.
class BadRows : public Failure {
 public:
  explicit BadRows(std::vector<std::string> bad_rows);
  const std::vector<std::string>& rows() const { return rows_; }

 private:
  std::vector<std::string> rows_;
};

struct LoadOptions {
  unsigned threads = 1;
  bool leave_out_bad_rows = false;
  uint64_t memory = 0;  ///< bytes that facts may take before they go to the disk; 0: no limit
  std::function<std::unique_ptr<ScratchFile>()> open_scratch = {};  ///< where they go then
  bool gathered = false;            ///< the server puts facts with equal keys together
  uint32_t totals_of = kNoTime;     ///< the hierarchy whose leaves' totals are wanted
  const KeptFacts* kept = nullptr;  ///< facts beside those of the table, or null
};

/// Parts of the table are read and sorted on several threads, then put together by ranges of their
/// keys; what comes out does not depend on where they were meanwhile. `progress` is told on the
/// caller's thread. Failure `BadRows` for rows that cannot be read, or for more than a million of
/// them when they are to be left out.
LoadedFacts LoadFacts(const TableSource& source, const CubeSchema& cube,
                      const std::vector<LoadedHierarchy>& hierarchies, const LoadOptions& options,
                      const Progress& progress);

}  // namespace vok::olap
