#include "providers/cube/adomd/adomd_cellset.h"

#include "platform/failure.h"
#include "platform/unique_name.h"
#include "providers/cube/adomd/adomd_connection.h"

namespace vok::windows {
namespace {

std::size_t CountOf(const Object& collection) {
  return static_cast<std::size_t>(collection.Read(L"Count").ToInt32());
}

}  // namespace

void AdomdCellset::SetActiveConnection(CubeConnection& connection) {
  cellset_.PutObject(L"ActiveConnection", AdomdConnection::From(connection).object());
}

void AdomdCellset::SetSource(const std::string& mdx) { cellset_.Put(L"Source", mdx); }

void AdomdCellset::Open() {
  axes_.clear();
  cellset_.Call(L"Open");
  const Object axes = cellset_.Child(L"Axes");
  const std::size_t count = CountOf(axes);
  for (std::size_t index = 0; index < count; ++index) {
    axes_.emplace_back(axes.Child(L"Item", static_cast<int32_t>(index)));
  }
}

void AdomdCellset::Close() {
  axes_.clear();
  cellset_.Call(L"Close");
}

const CellsetAxis& AdomdCellset::AxisAt(std::size_t index) const {
  if (index >= axes_.size()) {
    throw Failure(failure_number::kSubscript, "Subscript out of range: the cube's answer has " +
                                                  std::to_string(axes_.size()) + " axes, axis " +
                                                  std::to_string(index) + " was asked for");
  }
  return axes_[index];
}

Object AdomdCellset::CellObject(std::size_t ordinal) const {
  return cellset_.Child(item_, static_cast<int32_t>(ordinal));
}

Value AdomdCellset::Cell(std::size_t ordinal) const {
  const Object cell = CellObject(ordinal);
  try {
    Value value = cell.Read(value_);
    return value.IsNull() ? Value() : value;
  } catch (const Failure& failure) {
    return CellError{failure.description()};
  }
}

std::string AdomdCellset::FormattedCell(std::size_t ordinal) const {
  const Value text = CellObject(ordinal).Read(formatted_);
  return text.IsNull() ? std::string() : text.ToText();
}

AdomdCellset::Axis::Axis(const Object& axis)
    : positions_(axis.Child(L"Positions")),
      count_(CountOf(positions_)),
      width_(static_cast<std::size_t>(axis.Read(L"DimensionCount").ToInt32())) {}

AxisMember AdomdCellset::Axis::MemberAt(std::size_t position, std::size_t index) const {
  const Object members =
      positions_.Child(position_, static_cast<int32_t>(position)).Child(members_);
  const Object member = members.Child(member_, static_cast<int32_t>(index));
  AxisMember shown;
  shown.name = member.Read(name_).ToText();
  shown.caption = member.Read(caption_).ToText();
  shown.unique_name = member.Read(unique_name_).ToText();
  shown.level_name = member.Read(level_name_).ToText();
  // Some providers answer with the unique name when they are asked for the name.
  shown.name = cube_text::LastPart(shown.unique_name, shown.name);
  return shown;
}

}  // namespace vok::windows
