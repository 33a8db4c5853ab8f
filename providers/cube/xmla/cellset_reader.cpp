#include "providers/cube/xmla/cellset_reader.h"

#include <charconv>
#include <optional>

#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::xmla {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
  throw Failure(failure_number::kUnspecified, why);
}

template <typename Number>
std::optional<Number> Whole(std::string_view text) {
  Number number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

/// 2 for "Axis2"; nothing for the slicer's axis.
std::optional<std::size_t> AxisNumber(std::string_view name) {
  if (!name.starts_with("Axis")) return std::nullopt;
  return Whole<std::size_t>(name.substr(4));
}

bool IsErrorText(std::string_view formatted) {
  return formatted.starts_with("#ERR") || formatted.starts_with("#Err");
}

}  // namespace

void CellsetReader::Start(std::size_t level, std::string_view name,
                          const xml::Attributes& attributes) {
  if (level == 1) return StartSection(name);
  switch (section_) {
    case Section::kInfo:
      return StartInInfo(level, name, attributes);
    case Section::kAxes:
      return StartInAxes(level, name, attributes);
    case Section::kCells:
      return StartInCells(level, name, attributes);
    case Section::kOther:
      return;
  }
}

void CellsetReader::StartSection(std::string_view name) {
  if (name == "row") Refuse("it is a rowset, not a cellset");
  section_ = name == "OlapInfo"   ? Section::kInfo
             : name == "Axes"     ? Section::kAxes
             : name == "CellData" ? Section::kCells
                                  : Section::kOther;
  if (section_ == Section::kCells && !has_axes_) Refuse("its cells come before its axes");
  if (section_ == Section::kAxes && has_axes_) Refuse("it has axes twice");
  if (section_ == Section::kCells && has_cells_) Refuse("it has cells twice");
  in_axis_ = false;
}

void CellsetReader::StartInInfo(std::size_t level, std::string_view name,
                                const xml::Attributes& attributes) {
  if (level == 3 && name == "AxisInfo") {
    described_axis_ = AxisNumber(attributes.Get("name")).has_value();
    if (described_axis_) described_hierarchies_.push_back(0);
  } else if (level == 4 && name == "HierarchyInfo" && described_axis_) {
    ++described_hierarchies_.back();
  }
}

void CellsetReader::StartInAxes(std::size_t level, std::string_view name,
                                const xml::Attributes& attributes) {
  if (level == 2) {
    const auto number = AxisNumber(attributes.Get("name"));
    in_axis_ = name == "Axis" && number;
    if (!in_axis_) return;
    if (*number != data_.AxisCount() || *number >= kMaxAxes) Refuse("its axes are out of order");
    data_.AddAxis();
    if (*number < described_hierarchies_.size()) {
      data_.SetMembersPerPosition(described_hierarchies_[*number]);
    }
  } else if (level == 3 && in_axis_ && name != "Tuples") {
    Refuse("its axes are in another format than tuples (\"" + Excerpt(name) + "\")");
  } else if (level == 5) {
    unique_name_.clear();
    caption_.clear();
    level_name_.clear();
  }
}

void CellsetReader::StartInCells(std::size_t level, std::string_view name,
                                 const xml::Attributes& attributes) {
  if (level == 2) {
    const auto ordinal = Whole<uint64_t>(attributes.Get("CellOrdinal"));
    if (!ordinal) Refuse("one of its cells has no ordinal");
    ordinal_ = *ordinal;
    has_value_ = error_ = false;
    value_.clear();
    formatted_.clear();
  } else if (level == 3 && name == "Value") {
    type_ = attributes.Get("type");
    const std::string_view nil = attributes.Get("nil");
    has_value_ = nil != "true" && nil != "1";
  } else if (level == 4 && name == "Error") {
    error_ = true;
    value_ = attributes.Get("Description");
  }
}

void CellsetReader::End(std::size_t level, std::string_view name, std::string_view text) {
  if (section_ == Section::kAxes) EndInAxes(level, name, text);
  if (section_ == Section::kCells) EndInCells(level, name, text);
}

void CellsetReader::EndInAxes(std::size_t level, std::string_view name, std::string_view text) {
  if (level == 1) {
    has_axes_ = true;
    data_.EndAxes();
  }
  if (!in_axis_) return;
  if (level == 6) {
    if (name == "UName") unique_name_ = text;
    if (name == "Caption") caption_ = text;
    if (name == "LName") level_name_ = text;
  } else if (level == 5) {
    data_.AddMember(unique_name_, caption_, level_name_);
  } else if (level == 4) {
    data_.EndTuple();
  }
}

void CellsetReader::EndInCells(std::size_t level, std::string_view name, std::string_view text) {
  if (level == 3 && name == "FmtValue") {
    formatted_ = text;
  } else if (level == 3 && name == "Value" && !error_) {
    value_ = text;
  } else if (level == 5 && name == "Description" && error_) {
    value_ = text;
  } else if (level == 2) {
    EndCell();
  } else if (level == 1) {
    has_cells_ = true;
    data_.EndCells();
  }
}

void CellsetReader::EndCell() {
  if (!has_value_ && !error_) return;
  CellValue value = error_ ? CellValue{CellState::kError, 0} : ReadCellValue(type_, value_);
  if (value.state == CellState::kText && IsErrorText(formatted_)) value.state = CellState::kError;
  const bool has_text = value.state == CellState::kText || value.state == CellState::kError;
  data_.AddCell(ordinal_, value, has_text ? std::string_view(value_) : std::string_view(),
                formatted_);
}

void CellsetReader::Finish() {
  if (!has_axes_) Refuse("it has no axes");
}

}  // namespace vok::xmla
