#include "providers/cube/olap/mdx/result.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/number_format.h"

namespace vok::olap {

void MdxResult::SetAxes(Axes axes, Context base) {
  axes_ = std::move(axes);
  base_members_ = std::move(base.members);
}

const TupleSet& MdxResult::At(std::size_t axis) const {
  if (axis < axes_.size()) return axes_[axis];
  throw Failure(failure_number::kItemNotFound, "The cellset has no axis " + std::to_string(axis) +
                                                   ": it has " + std::to_string(axes_.size()) +
                                                   ".");
}

void MdxResult::CheckMember(std::size_t axis, std::size_t position, std::size_t index) const {
  if (position < At(axis).size() && index < At(axis).arity()) return;
  throw Failure(failure_number::kSubscript, "The cellset has no member " + std::to_string(index) +
                                                " at position " + std::to_string(position) + ".");
}

AxisMember MdxResult::Member(std::size_t axis, std::size_t position, std::size_t index) const {
  CheckMember(axis, position, index);
  const TupleSet& tuples = axes_[axis];
  const HierarchyId hierarchy = tuples.hierarchies[index];
  const MemberId id = tuples.tuple(position)[index];
  if (IsCalculated(id)) return CalculatedAxisMember(hierarchy, id);
  return {cube_->MemberName(hierarchy, id), cube_->Caption(hierarchy, id),
          cube_->UniqueName(hierarchy, id),
          cube_->LevelUniqueName(hierarchy, cube_->LevelOf(hierarchy, id))};
}

AxisMember MdxResult::CalculatedAxisMember(HierarchyId hierarchy, MemberId id) const {
  const CalculatedMember& member = query_.Member(id);
  const uint32_t level =
      member.parent == kNoMember ? 0 : cube_->LevelOf(hierarchy, member.parent) + 1;
  const std::string level_name = level < cube_->LevelCount(hierarchy)
                                     ? cube_->LevelUniqueName(hierarchy, level)
                                     : std::string();
  return {member.name, member.caption, member.unique_name, level_name};
}

void MdxResult::CheckOrdinal(std::size_t ordinal) const {
  if (ordinal < CellCount()) return;
  throw Failure(failure_number::kSubscript, "The cellset has no cell " + std::to_string(ordinal) +
                                                ": it has " + std::to_string(CellCount()) + ".");
}

void MdxResult::ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                             std::span<std::string_view> captions) const {
  if (captions.empty()) return;
  CheckMember(axis, first + captions.size() - 1, index);
  const TupleSet& tuples = axes_[axis];
  const HierarchyId hierarchy = tuples.hierarchies[index];
  std::optional<TextReader> stored;
  if (hierarchy != kMeasures) stored = cube_->Stored(hierarchy).Captions();
  captions_.resize(std::max(captions_.size(), captions.size()));
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const MemberId id = tuples.tuple(first + i)[index];
    captions_[i] = IsCalculated(id) ? query_.Member(id).caption
                   : stored         ? (*stored)[id]
                                    : cube_->Caption(hierarchy, id);
    captions[i] = captions_[i];
  }
}

void MdxResult::ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                          std::span<CellState> states) const {
  if (numbers.empty()) return;
  CheckOrdinal(first + (numbers.size() - 1) * step);
  cells_.Read(first, step, numbers, states);
}

std::string MdxResult::CellText(std::size_t ordinal) const {
  CheckOrdinal(ordinal);
  return cells_.Text(ordinal);
}

std::string MdxResult::FormattedCell(std::size_t ordinal) const {
  const Value value = Cell(ordinal);
  if (const double* number = value.As<double>()) return FormatNumber(*number, FormatAt(ordinal));
  if (const bool* logical = value.As<bool>()) return *logical ? "true" : "false";
  return value.ToText();
}

/// The format of the member that gives the cell its value; of the measure when that has none.
std::string MdxResult::FormatAt(std::size_t ordinal) const {
  std::vector<MemberId> members = base_members_;
  for (const TupleSet& axis : axes_) {
    const std::size_t position = ordinal % axis.size();
    ordinal /= axis.size();
    for (std::size_t i = 0; i < axis.arity(); ++i) {
      members[axis.hierarchies[i]] = axis.tuple(position)[i];
    }
  }
  const HierarchyId deciding = DecidingHierarchy(query_, members);
  if (deciding != kNoHierarchy && query_.Member(members[deciding]).format) {
    return *query_.Member(members[deciding]).format;
  }
  const MemberId measure = members[kMeasures];
  if (measure == kNoMember) return {};
  if (IsCalculated(measure)) return query_.Member(measure).format.value_or("");
  return cube_->model().measures[measure].format_string;
}

}  // namespace vok::olap
