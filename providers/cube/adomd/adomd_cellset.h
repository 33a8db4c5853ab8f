// A query and its answer through the platform's multidimensional data objects.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/cube.h"
#include "system/automation/object.h"

namespace vok::windows {

/// The cellset of those objects, from its opening until it is closed. It keeps its connection
/// alive.
class OpenCellset {
 public:
  OpenCellset(const Object& connection, const std::string& mdx);
  OpenCellset(const OpenCellset&) = delete;
  OpenCellset& operator=(const OpenCellset&) = delete;
  ~OpenCellset();
  /// Closes it once. The destructor does so too, but cannot tell a failure.
  void Close();

  const Object& object() const { return cellset_; }

 private:
  Object cellset_ = Object::Create("ADOMD.Cellset");
  bool is_open_ = false;
};

/// Members and cells are read when they are asked for. A cell whose computation failed is an error
/// with the provider's words.
class AdomdCellset : public Cellset {
 public:
  explicit AdomdCellset(std::shared_ptr<OpenCellset> cellset);
  std::size_t AxisCount() const override { return axes_.size(); }
  std::size_t PositionCount(std::size_t axis) const override { return At(axis).count; }
  std::size_t MembersPerPosition(std::size_t axis) const override { return At(axis).width; }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const override;
  void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                    std::span<std::string_view> captions) const override;
  void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                 std::span<CellState> states) const override;
  std::string CellText(std::size_t ordinal) const override;
  std::string FormattedCell(std::size_t ordinal) const override;

 private:
  using Name = windows::Member;
  struct Axis {
    explicit Axis(const Object& axis);
    Object positions;
    std::size_t count;
    std::size_t width;
    Name position{L"Item"}, members{L"Members"}, member{L"Item"};
    Name name{L"Name"}, caption{L"Caption"}, unique_name{L"UniqueName"}, level_name{L"LevelName"};
  };

  const Axis& At(std::size_t axis) const;
  Object CellObject(std::size_t ordinal) const;
  Value CellValue(std::size_t ordinal) const;

  std::shared_ptr<OpenCellset> cellset_;
  std::deque<Axis> axes_;
  mutable std::vector<std::string> captions_;  ///< those that were read last
  Name item_{L"Item"}, value_{L"Value"}, formatted_{L"FormattedValue"};
};

}  // namespace vok::windows
