// A query on a cube server and its answer, which stays readable after the connection is gone.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "platform/cube.h"
#include "providers/cube/xmla/cellset_data.h"
#include "providers/cube/xmla/xmla_connection.h"

namespace vok::xmla {

/// Failures: 3704 before `Open` or without a connection, 3265 for an axis that is not there, 9 for
/// a cell or position that is not there, and those of `Server::Execute`.
class XmlaCellset : public Cellset {
 public:
  void SetActiveConnection(CubeConnection& connection) override;
  void SetSource(const std::string& mdx) override { source_ = mdx; }
  void Open() override;
  void Close() override;
  std::size_t AxisCount() const override { return Data().AxisCount(); }
  const CellsetAxis& AxisAt(std::size_t index) const override;
  Value Cell(std::size_t ordinal) const override { return Data().Cell(ordinal); }
  std::string FormattedCell(std::size_t ordinal) const override {
    return Data().FormattedCell(ordinal);
  }

 private:
  class Axis : public CellsetAxis {
   public:
    Axis(const CellsetData& data, std::size_t index) : data_(data), index_(index) {}
    std::size_t PositionCount() const override { return data_.PositionCount(index_); }
    std::size_t MembersPerPosition() const override { return data_.MembersPerPosition(index_); }
    AxisMember MemberAt(std::size_t position, std::size_t index) const override {
      return data_.Member(index_, position, index);
    }

   private:
    const CellsetData& data_;
    std::size_t index_;
  };

  const CellsetData& Data() const;

  std::shared_ptr<const OpenedServer> opened_;
  std::string source_;
  std::unique_ptr<CellsetData> data_;
  std::deque<Axis> axes_;
};

}  // namespace vok::xmla
