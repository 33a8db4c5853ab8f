// The answer to a query in little space: axes of tuples, and the cells that hold something, by
// ordinal. Texts are kept once each, in large pieces; nothing is copied while it grows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/xmla/cell_value.h"
#include "providers/cube/xmla/text_arena.h"

namespace vok::xmla {

inline constexpr std::size_t kMaxAxes = 128;
inline constexpr std::size_t kMaxLevels = kMaxAxes * kMaxAxes;
inline constexpr std::size_t kMaxTuples = 5'000'000;    // of all axes together
inline constexpr std::size_t kMaxMembers = 20'000'000;  // of all tuples together
inline constexpr std::size_t kMaxCells = 50'000'000;

/// Filled by its reader, axes first, with failures -2147467259 for an answer that contradicts
/// itself or goes beyond the limits. Once full it never changes.
class CellsetData : public Cellset {
 public:
  explicit CellsetData(std::size_t max_cells = kMaxCells) : max_cells_(max_cells) {}

  void AddAxis() { axes_.emplace_back(); }
  /// How many members each tuple of the newest axis must have.
  void SetMembersPerPosition(std::size_t count) { axes_.back().arity = count; }
  void AddMember(std::string_view unique_name, std::string_view caption, std::string_view level);
  void EndTuple();
  /// All axes are there: from now on cells are added.
  void EndAxes();
  /// `text`: of a text or an error.
  void AddCell(uint64_t ordinal, CellValue value, std::string_view text,
               std::string_view formatted);
  /// All cells are there.
  void EndCells();

  std::size_t AxisCount() const override { return axes_.size(); }
  std::size_t PositionCount(std::size_t axis) const override { return At(axis).positions; }
  std::size_t MembersPerPosition(std::size_t axis) const override { return At(axis).arity; }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const override;
  void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                    std::span<std::string_view> captions) const override;
  void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                 std::span<CellState> states) const override;
  std::string CellText(std::size_t ordinal) const override;
  std::string FormattedCell(std::size_t ordinal) const override;

 private:
  struct StoredMember {
    std::string_view unique_name;
    std::string_view caption;
    std::size_t level = 0;
  };
  struct Axis {
    std::deque<StoredMember> members;  // tuple by tuple
    std::size_t arity = 0;
    std::size_t positions = 0;
  };
  /// In `texts`: the text of the value, then the formatted value.
  struct StoredCell {
    double number = 0;
    const char* texts = nullptr;
    uint32_t ordinal = 0;
    uint32_t formatted_size = 0;
    uint32_t text_size = 0;
    CellState state = CellState::kEmpty;
  };

  const Axis& At(std::size_t axis) const;
  std::size_t LevelIndex(std::string_view name);
  using Cells = std::deque<StoredCell>;
  Cells::const_iterator FindFrom(const Cells::const_iterator& from, std::size_t ordinal) const;
  const StoredCell* Find(std::size_t ordinal) const;

  TextArena texts_;
  std::string scratch_;
  std::deque<std::string> levels_;
  std::unordered_map<std::string_view, std::size_t> level_index_;
  std::deque<Axis> axes_;
  std::size_t tuple_count_ = 0;
  std::size_t member_count_ = 0;
  std::size_t max_cells_;
  uint64_t cell_count_ = 0;  ///< of the whole answer, empty ones with it
  Cells cells_;
  bool in_order_ = true;
};

}  // namespace vok::xmla
