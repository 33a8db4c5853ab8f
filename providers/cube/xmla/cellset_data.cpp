#include "providers/cube/xmla/cellset_data.h"

#include <algorithm>

#include "platform/cube.h"
#include "platform/failure.h"

namespace vok::xmla {
namespace {

[[noreturn]] void Contradicts(const std::string& how) {
  throw Failure(failure_number::kUnspecified, how);
}

void CheckSubscript(std::size_t index, std::size_t count, const char* what) {
  if (index < count) return;
  throw Failure(failure_number::kSubscript, std::string("Subscript out of range: ") + what + " " +
                                                std::to_string(index) +
                                                " of the cellset was asked for; there are " +
                                                std::to_string(count) + ", counted from 0.");
}

void CheckLimit(std::size_t count, std::size_t most, const char* what) {
  if (count <= most) return;
  Contradicts("it has more than " + std::to_string(most) + " " + what + "; ask for fewer members");
}

}  // namespace

void CellsetData::AddMember(std::string_view unique_name, std::string_view caption,
                            std::string_view level) {
  CheckLimit(++member_count_, kMaxMembers, "members in its tuples");
  axes_.back().members.push_back({texts_.Add(unique_name), texts_.Add(caption), LevelIndex(level)});
}

std::size_t CellsetData::LevelIndex(std::string_view name) {
  const auto known = level_index_.find(name);
  if (known != level_index_.end()) return known->second;
  CheckLimit(levels_.size() + 1, kMaxLevels, "levels");
  levels_.emplace_back(name);
  level_index_.emplace(levels_.back(), levels_.size() - 1);
  return levels_.size() - 1;
}

void CellsetData::EndTuple() {
  CheckLimit(++tuple_count_, kMaxTuples, "tuples");
  Axis& axis = axes_.back();
  if (axis.positions == 0 && axis.arity == 0) axis.arity = axis.members.size();
  ++axis.positions;
  if (axis.members.size() != axis.positions * axis.arity) {
    Contradicts("its axis " + std::to_string(axes_.size() - 1) +
                " has tuples of different lengths");
  }
}

void CellsetData::EndAxes() {
  cell_count_ = 1;
  for (const Axis& axis : axes_) {
    const bool over = axis.positions != 0 && cell_count_ > max_cells_ / axis.positions;
    CheckLimit(over ? max_cells_ + 1 : 0, max_cells_, "cells");
    cell_count_ *= axis.positions;
  }
}

void CellsetData::AddCell(uint64_t ordinal, CellValue value, std::string_view text,
                          std::string_view formatted) {
  if (ordinal >= cell_count_) {
    Contradicts("it has a cell " + std::to_string(ordinal) + ", though its axes make " +
                std::to_string(cell_count_));
  }
  if (cells_.size() == cell_count_) Contradicts("it has one of its cells twice");
  in_order_ = in_order_ && (cells_.empty() || ordinal > cells_.back().ordinal);
  scratch_.assign(text).append(formatted);
  cells_.push_back({value.number, texts_.Add(scratch_).data(), static_cast<uint32_t>(ordinal),
                    static_cast<uint32_t>(formatted.size()), static_cast<uint32_t>(text.size()),
                    value.state});
}

void CellsetData::EndCells() {
  if (in_order_) return;
  const auto before = [](const StoredCell& a, const StoredCell& b) {
    return a.ordinal < b.ordinal;
  };
  std::sort(cells_.begin(), cells_.end(), before);
  const auto twice = std::adjacent_find(
      cells_.begin(), cells_.end(),
      [](const StoredCell& a, const StoredCell& b) { return a.ordinal == b.ordinal; });
  if (twice != cells_.end()) {
    Contradicts("it has the cell " + std::to_string(twice->ordinal) + " twice");
  }
}

const CellsetData::Axis& CellsetData::At(std::size_t axis) const {
  if (axis < axes_.size()) return axes_[axis];
  throw Failure(failure_number::kItemNotFound, "The cellset has no axis " + std::to_string(axis) +
                                                   ": it has " + std::to_string(axes_.size()) +
                                                   ".");
}

AxisMember CellsetData::Member(std::size_t axis, std::size_t position, std::size_t index) const {
  const Axis& from = At(axis);
  CheckSubscript(position, from.positions, "position");
  CheckSubscript(index, from.arity, "member");
  const StoredMember& member = from.members[position * from.arity + index];
  AxisMember shown;
  shown.unique_name = member.unique_name;
  shown.caption = member.caption;
  shown.name = cube_text::LastPart(member.unique_name, member.caption);
  shown.level_name = levels_[member.level];
  return shown;
}

/// The first cell from `from` on whose ordinal is not less. A cell stands at its ordinal when none
/// before it is empty, else somewhere before.
CellsetData::Cells::const_iterator CellsetData::FindFrom(const Cells::const_iterator& from,
                                                         std::size_t ordinal) const {
  if (ordinal < cells_.size()) {
    const auto there = cells_.begin() + static_cast<std::ptrdiff_t>(ordinal);
    if (there->ordinal == ordinal) return there;
  }
  const auto end = cells_.begin() + static_cast<std::ptrdiff_t>(std::min(ordinal, cells_.size()));
  return std::lower_bound(from, end, ordinal,
                          [](const StoredCell& cell, std::size_t o) { return cell.ordinal < o; });
}

const CellsetData::StoredCell* CellsetData::Find(std::size_t ordinal) const {
  CheckSubscript(ordinal, cell_count_, "cell");
  const auto found = FindFrom(cells_.begin(), ordinal);
  return found != cells_.end() && found->ordinal == ordinal ? &*found : nullptr;
}

void CellsetData::ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                               std::span<std::string_view> captions) const {
  if (captions.empty()) return;
  const Axis& from = At(axis);
  CheckSubscript(first + captions.size() - 1, from.positions, "position");
  CheckSubscript(index, from.arity, "member");
  for (std::size_t i = 0; i < captions.size(); ++i) {
    captions[i] = from.members[(first + i) * from.arity + index].caption;
  }
}

void CellsetData::ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                            std::span<CellState> states) const {
  if (numbers.empty()) return;
  CheckSubscript(first + (numbers.size() - 1) * step, cell_count_, "cell");
  auto cell = cells_.begin();
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t ordinal = first + i * step;
    cell = FindFrom(cell, ordinal);
    const bool is_there = cell != cells_.end() && cell->ordinal == ordinal;
    numbers[i] = is_there ? cell->number : 0;
    states[i] = is_there ? cell->state : CellState::kEmpty;
  }
}

std::string CellsetData::CellText(std::size_t ordinal) const {
  const StoredCell* cell = Find(ordinal);
  return cell == nullptr ? std::string() : std::string(cell->texts, cell->text_size);
}

std::string CellsetData::FormattedCell(std::size_t ordinal) const {
  const StoredCell* cell = Find(ordinal);
  if (cell == nullptr) return {};
  return std::string(cell->texts + cell->text_size, cell->formatted_size);
}

}  // namespace vok::xmla
