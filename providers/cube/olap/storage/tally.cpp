#include "providers/cube/olap/storage/tally.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>
#include <vector>

#include "providers/cube/olap/storage/exact.h"

namespace vok::olap {
namespace {

/// Turns sums, which are integers in the memory of doubles, into the doubles nearest to them /
/// 10^`scale`. Some hundred at a time stay in the processor's nearest memory.
void TurnSomeIntoDoubles(std::span<double> sums, int scale) {
  // Such an integer added to the bits of the shifter adds as much to its value: arithmetic that
  // processors do for several numbers at once.
  constexpr double kShifter = 0x1.8p52;
  constexpr uint64_t kLimit = uint64_t{1} << 51;
  uint64_t beyond = 0;
  for (const double sum : sums) beyond |= (std::bit_cast<uint64_t>(sum) + kLimit) >> 52;
  if (beyond != 0) {
    for (double& sum : sums) sum = NearestDouble(std::bit_cast<int64_t>(sum), scale);
    return;
  }
  for (double& sum : sums) {
    sum = std::bit_cast<double>(std::bit_cast<int64_t>(sum) + std::bit_cast<int64_t>(kShifter)) -
          kShifter;
  }
  if (scale == 0) return;
  const double power = kExactPowers[static_cast<std::size_t>(scale)];
  for (double& sum : sums) sum /= power;
}

void TurnIntoDoubles(std::span<double> sums, int scale) {
  constexpr std::size_t kSome = 1024;
  for (; sums.size() > kSome; sums = sums.subspan(kSome)) {
    TurnSomeIntoDoubles(sums.first(kSome), scale);
  }
  TurnSomeIntoDoubles(sums, scale);
}

/// How a stored number enters a cell of type `Cell`, and leaves it as a double.
template <typename CellType>
struct Decimal {
  using Cell = CellType;
  static Cell FromStored(int64_t stored) { return stored; }
  static double ToDouble(Cell cell, int scale) { return NearestDouble(cell, scale); }
};

struct Floating {
  using Cell = long double;  // more digits than the values have keep the error of a sum small
  static Cell FromStored(int64_t stored) { return std::bit_cast<double>(stored); }
  static double ToDouble(Cell cell, int) { return static_cast<double>(cell); }
};

struct Plus {
  template <typename Cell>
  static Cell Join(Cell a, Cell b) {
    return a + b;
  }
  /// Sums of a narrow column fit; those of a damaged one may wrap.
  static int64_t Join(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
  }
};
struct Smaller {
  template <typename Cell>
  static Cell Join(Cell a, Cell b) {
    return std::min(a, b);
  }
};
struct Larger {
  template <typename Cell>
  static Cell Join(Cell a, Cell b) {
    return std::max(a, b);
  }
};

template <typename Number, typename Operation>
class TallyOf : public Tally {
 public:
  TallyOf(int scale, std::size_t groups) : scale_(scale), cells_(groups), states_(groups) {}

  void Add(std::span<const uint32_t> groups, std::span<const int64_t> values,
           std::span<const int64_t> validity) override {
    Cell* const cells = cells_.data();
    CellState* const states = states_.data();
    for (std::size_t row = 0; row < values.size(); ++row) {
      if (!validity.empty() && validity[row] == 0) continue;
      const uint32_t group = groups[row];
      const Cell value = Number::FromStored(values[row]);
      const bool joins = kStartsAtZero || states[group] == CellState::kNumber;
      cells[group] = joins ? Operation::Join(cells[group], value) : value;
      states[group] = CellState::kNumber;
    }
  }

  FactColumn Result(std::size_t count) override {
    FactColumn column(count);
    for (std::size_t group = 0; group < count; ++group) {
      if (states_[group] == CellState::kEmpty) continue;
      column.numbers[group] = Number::ToDouble(cells_[group], scale_);
      column.states[group] = CellState::kNumber;
      column.overflows = column.overflows || !std::isfinite(column.numbers[group]);
    }
    return column;
  }

 private:
  using Cell = typename Number::Cell;
  static constexpr bool kStartsAtZero = std::is_same_v<Operation, Plus>;

  int scale_;
  std::vector<Cell> cells_;
  std::vector<CellState> states_;
};

/// Sums of 64 bits, the most frequent ones, grow in the memory of the result.
class NarrowSums : public Tally {
 public:
  NarrowSums(int scale, std::size_t groups) : scale_(scale), sums_(groups) {}

  void Add(std::span<const uint32_t> groups, std::span<const int64_t> values,
           std::span<const int64_t> validity) override {
    double* const sums = sums_.numbers.data();
    CellState* const states = sums_.states.data();
    for (std::size_t row = 0; row < values.size(); ++row) {
      if (!validity.empty() && validity[row] == 0) continue;
      double& sum = sums[groups[row]];
      sum = std::bit_cast<double>(Plus::Join(std::bit_cast<int64_t>(sum), values[row]));
      states[groups[row]] = CellState::kNumber;
    }
  }

  FactColumn Result(std::size_t count) override {
    sums_.numbers.resize(count);
    sums_.states.resize(count);
    TurnIntoDoubles(sums_.numbers, scale_);
    return std::move(sums_);
  }

 private:
  int scale_;
  FactColumn sums_;  // until `Result`, the bits of its numbers are those of integers
};

/// Values are numbers that stand for different keys.
class DistinctCount : public Tally {
 public:
  explicit DistinctCount(std::size_t groups) : counts_(groups) {}

  void Add(std::span<const uint32_t> groups, std::span<const int64_t> values,
           std::span<const int64_t> validity) override {
    for (std::size_t row = 0; row < values.size(); ++row) {
      counts_.states[groups[row]] = CellState::kNumber;
      if (!validity.empty() && validity[row] == 0) continue;
      seen_.emplace_back(groups[row], values[row]);
    }
    constexpr std::size_t kLeast = std::size_t{1} << 16;
    if (seen_.size() > std::max(kLeast, 2 * distinct_)) Compact();
  }

  FactColumn Result(std::size_t count) override {
    Compact();
    counts_.numbers.resize(count);
    counts_.states.resize(count);
    for (const auto& [group, value] : seen_) {
      if (group < count) counts_.numbers[group] += 1;
    }
    return std::move(counts_);
  }

 private:
  void Compact() {
    std::sort(seen_.begin(), seen_.end());
    seen_.erase(std::unique(seen_.begin(), seen_.end()), seen_.end());
    distinct_ = seen_.size();
  }

  FactColumn counts_;
  LongList<std::pair<uint32_t, int64_t>> seen_;
  std::size_t distinct_ = 0;
};

template <typename Number>
std::unique_ptr<Tally> MakeFor(Aggregator aggregator, int scale, std::size_t groups) {
  switch (aggregator) {
    case Aggregator::kMin:
      return std::make_unique<TallyOf<Number, Smaller>>(scale, groups);
    case Aggregator::kMax:
      return std::make_unique<TallyOf<Number, Larger>>(scale, groups);
    default:
      return std::make_unique<TallyOf<Number, Plus>>(scale, groups);
  }
}

}  // namespace

std::unique_ptr<Tally> Tally::Make(Aggregator aggregator, const ValueFormat& format,
                                   std::size_t groups) {
  if (aggregator == Aggregator::kDistinctCount) return std::make_unique<DistinctCount>(groups);
  if (format.kind == NumberKind::kDouble) return MakeFor<Floating>(aggregator, 0, groups);
  const bool is_sum = aggregator == Aggregator::kSum || aggregator == Aggregator::kCount;
  if (is_sum && format.is_narrow) return std::make_unique<NarrowSums>(format.scale, groups);
  if (is_sum) return MakeFor<Decimal<Int128>>(aggregator, format.scale, groups);
  return MakeFor<Decimal<int64_t>>(aggregator, format.scale, groups);
}

}  // namespace vok::olap
