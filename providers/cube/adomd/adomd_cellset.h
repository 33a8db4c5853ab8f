// A query and its answer through the platform's multidimensional data objects.
//
// Axes and cells are read when they are asked for; the answer keeps its connection alive. A cell
// whose computation failed is a `CellError` with the provider's words.
#pragma once

#include <deque>

#include "platform/cube.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdomdCellset : public Cellset {
 public:
  AdomdCellset() : cellset_(Object::Create("ADOMD.Cellset")) {}
  void SetActiveConnection(CubeConnection& connection) override;
  void SetSource(const std::string& mdx) override;
  void Open() override;
  void Close() override;
  std::size_t AxisCount() const override { return axes_.size(); }
  /// Failure 9 for an axis that is not there.
  const CellsetAxis& AxisAt(std::size_t index) const override;
  Value Cell(std::size_t ordinal) const override;
  std::string FormattedCell(std::size_t ordinal) const override;

 private:
  class Axis : public CellsetAxis {
   public:
    explicit Axis(const Object& axis);
    std::size_t PositionCount() const override { return count_; }
    std::size_t MembersPerPosition() const override { return width_; }
    AxisMember MemberAt(std::size_t position, std::size_t index) const override;

   private:
    Object positions_;
    std::size_t count_;
    std::size_t width_;
    Member position_{L"Item"}, members_{L"Members"}, member_{L"Item"};
    Member name_{L"Name"}, caption_{L"Caption"}, unique_name_{L"UniqueName"};
    Member level_name_{L"LevelName"};
  };

  Object CellObject(std::size_t ordinal) const;

  Object cellset_;
  std::deque<Axis> axes_;
  Member item_{L"Item"}, value_{L"Value"}, formatted_{L"FormattedValue"};
};

}  // namespace vok::windows
