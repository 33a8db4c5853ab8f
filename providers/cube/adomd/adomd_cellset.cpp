#include "providers/cube/adomd/adomd_cellset.h"

#include "platform/cube.h"
#include "platform/failure.h"

namespace vok::windows {
namespace {

std::size_t CountOf(const Object& collection) {
  return static_cast<std::size_t>(collection.Read(L"Count").ToInt32());
}

CellState StateOf(const Value& value) {
  if (value.IsEmpty()) return CellState::kEmpty;
  if (value.Is<double>()) return CellState::kNumber;
  if (value.Is<int32_t>() || value.Is<int16_t>()) return CellState::kInteger;
  if (value.Is<bool>()) return CellState::kLogical;
  return value.Is<CellError>() ? CellState::kError : CellState::kText;
}

}  // namespace

OpenCellset::OpenCellset(const Object& connection, const std::string& mdx) {
  cellset_.PutObject(L"ActiveConnection", connection);
  cellset_.Put(L"Source", mdx);
  cellset_.Call(L"Open");
  is_open_ = true;
}

OpenCellset::~OpenCellset() {
  try {
    Close();
  } catch (const Failure&) {  // what was read of it stays as it is
  }
}

void OpenCellset::Close() {
  if (std::exchange(is_open_, false)) cellset_.Call(L"Close");
}

AdomdCellset::AdomdCellset(std::shared_ptr<OpenCellset> cellset) : cellset_(std::move(cellset)) {
  const Object axes = cellset_->object().Child(L"Axes");
  const std::size_t count = CountOf(axes);
  for (std::size_t index = 0; index < count; ++index) {
    axes_.emplace_back(axes.Child(L"Item", static_cast<int32_t>(index)));
  }
}

const AdomdCellset::Axis& AdomdCellset::At(std::size_t axis) const {
  if (axis < axes_.size()) return axes_[axis];
  throw Failure(failure_number::kItemNotFound, "The cube's answer has " +
                                                   std::to_string(axes_.size()) + " axes, axis " +
                                                   std::to_string(axis) + " was asked for");
}

Object AdomdCellset::CellObject(std::size_t ordinal) const {
  return cellset_->object().Child(item_, static_cast<int32_t>(ordinal));
}

Value AdomdCellset::CellValue(std::size_t ordinal) const {
  const Object cell = CellObject(ordinal);
  try {
    Value value = cell.Read(value_);
    return value.IsNull() ? Value() : value;
  } catch (const Failure& failure) {
    return CellError{failure.description()};
  }
}

void AdomdCellset::ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                             std::span<CellState> states) const {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const Value value = CellValue(first + i * step);
    states[i] = StateOf(value);
    const bool has_number = states[i] == CellState::kNumber || states[i] == CellState::kInteger ||
                            states[i] == CellState::kLogical;
    numbers[i] = has_number ? value.ToDouble() : 0;
  }
}

std::string AdomdCellset::CellText(std::size_t ordinal) const {
  const Value value = CellValue(ordinal);
  const auto* error = value.As<CellError>();
  return error != nullptr ? error->description : value.ToText();
}

std::string AdomdCellset::FormattedCell(std::size_t ordinal) const {
  const Value text = CellObject(ordinal).Read(formatted_);
  return text.IsNull() ? std::string() : text.ToText();
}

AdomdCellset::Axis::Axis(const Object& axis)
    : positions(axis.Child(L"Positions")),
      count(CountOf(positions)),
      width(static_cast<std::size_t>(axis.Read(L"DimensionCount").ToInt32())) {}

AxisMember AdomdCellset::Member(std::size_t axis, std::size_t position, std::size_t index) const {
  const Axis& from = At(axis);
  const Object members =
      from.positions.Child(from.position, static_cast<int32_t>(position)).Child(from.members);
  const Object member = members.Child(from.member, static_cast<int32_t>(index));
  AxisMember shown;
  shown.name = member.Read(from.name).ToText();
  shown.caption = member.Read(from.caption).ToText();
  shown.unique_name = member.Read(from.unique_name).ToText();
  shown.level_name = member.Read(from.level_name).ToText();
  // Some providers answer with the unique name when they are asked for the name.
  shown.name = cube_text::LastPart(shown.unique_name, shown.name);
  return shown;
}

void AdomdCellset::ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                                std::span<std::string_view> captions) const {
  captions_.resize(captions.size());
  for (std::size_t i = 0; i < captions.size(); ++i) {
    captions_[i] = Member(axis, first + i, index).caption;
    captions[i] = captions_[i];
  }
}

}  // namespace vok::windows
