// A cube in memory, laid out by hand: its dimensions, and the answer to each query.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/cube.h"
#include "platform/failure.h"

namespace vok::test {

/// A member of a level; `parent` is its index in the level above, -1 for none.
struct FakeMember {
  std::string name;
  int parent = -1;
  std::string unique_name = "";
};

struct FakeLevel {
  std::string name;
  std::vector<FakeMember> members;
  bool is_all = false;
};

/// A dimension with one hierarchy, of the dimension's name unless it has another.
struct FakeDimension {
  std::string name;
  std::vector<FakeLevel> levels;
  std::string hierarchy = "";
};

/// A number, unless it is told otherwise.
struct FakeCell {
  FakeCell(double value, CellState kind = CellState::kNumber) : number(value), state(kind) {}
  FakeCell(CellState kind = CellState::kEmpty, const std::string& words = "")
      : state(kind), text(words) {}
  double number = 0;
  CellState state;
  std::string text;
};

/// The answer to a query: per axis the positions, each with its members; cells row by row.
struct FakeAnswer {
  std::vector<std::vector<std::vector<AxisMember>>> axes;
  std::vector<FakeCell> cells;
};

/// Everything that the cube is and was asked. `answer` may throw.
struct FakeCube {
  std::vector<FakeDimension> dimensions;
  std::function<FakeAnswer(const std::string& mdx)> answer;
  std::function<void()> on_open = [] {};
  std::function<void()> on_close = [] {};
  std::vector<std::string> catalogs;  ///< as the schema rowset lists them
  std::string default_catalog;

  std::vector<std::string> connection_calls;
  std::vector<std::string> queries;
};

namespace fake_cube {

[[noreturn]] inline void ThrowNotFound(const std::string& what) {
  throw Failure(failure_number::kItemNotFound, "Item not found: " + what, "Fake cube");
}

class Member : public CubeMember {
 public:
  Member(const FakeDimension& dimension, std::size_t level, std::size_t index)
      : dimension_(dimension), level_(level), index_(index) {}
  std::string Name() const override { return Self().name; }
  std::string Caption() const override { return Self().name; }
  std::string UniqueName() const override { return Self().unique_name; }
  std::unique_ptr<CubeMember> Parent() const override {
    if (Self().parent < 0) return nullptr;
    return std::make_unique<Member>(dimension_, level_ - 1,
                                    static_cast<std::size_t>(Self().parent));
  }

 private:
  const FakeMember& Self() const { return dimension_.levels[level_].members.at(index_); }
  const FakeDimension& dimension_;
  std::size_t level_;
  std::size_t index_;
};

class Level : public CubeLevel {
 public:
  Level(const FakeDimension& dimension, std::size_t level) : dimension_(dimension), level_(level) {}
  std::string Name() const override { return dimension_.levels[level_].name; }
  std::string UniqueName() const override { return "[" + Name() + "]"; }
  bool IsAll() const override { return dimension_.levels[level_].is_all; }
  std::size_t MemberCount() const override { return dimension_.levels[level_].members.size(); }
  std::unique_ptr<CubeMember> MemberAt(std::size_t index) const override {
    if (index >= MemberCount()) ThrowNotFound("member " + std::to_string(index));
    return std::make_unique<Member>(dimension_, level_, index);
  }

 private:
  const FakeDimension& dimension_;
  std::size_t level_;
};

class Hierarchy : public CubeHierarchy {
 public:
  explicit Hierarchy(const FakeDimension& dimension) : dimension_(dimension) {}
  std::string Name() const override {
    return dimension_.hierarchy.empty() ? dimension_.name : dimension_.hierarchy;
  }
  std::string UniqueName() const override { return "[" + dimension_.name + "]"; }
  std::size_t LevelCount() const override { return dimension_.levels.size(); }
  std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const override {
    if (index >= LevelCount()) ThrowNotFound("level " + std::to_string(index));
    return std::make_unique<Level>(dimension_, index);
  }

 private:
  const FakeDimension& dimension_;
};

class Dimension : public CubeDimension {
 public:
  explicit Dimension(const FakeDimension& dimension) : dimension_(dimension) {}
  std::string Name() const override { return dimension_.name; }
  std::string UniqueName() const override { return "[" + dimension_.name + "]"; }
  std::size_t HierarchyCount() const override { return 1; }
  std::unique_ptr<CubeHierarchy> HierarchyAt(std::size_t index) const override {
    if (index != 0) ThrowNotFound("hierarchy " + std::to_string(index));
    return std::make_unique<Hierarchy>(dimension_);
  }

 private:
  const FakeDimension& dimension_;
};

class Definition : public CubeDef {
 public:
  explicit Definition(const FakeCube& cube) : cube_(cube) {}
  std::string Name() const override { return "FAKE"; }
  std::size_t DimensionCount() const override { return cube_.dimensions.size(); }
  std::unique_ptr<CubeDimension> DimensionAt(std::size_t index) const override {
    return std::make_unique<Dimension>(cube_.dimensions.at(index));
  }
  std::unique_ptr<CubeDimension> FindDimension(const std::string& name) const override {
    for (const FakeDimension& dimension : cube_.dimensions) {
      if (dimension.name == name) return std::make_unique<Dimension>(dimension);
    }
    return nullptr;
  }

 private:
  const FakeCube& cube_;
};

class Catalog : public CubeCatalog {
 public:
  explicit Catalog(const FakeCube& cube) : cube_(cube) {}
  std::size_t CubeCount() const override { return 1; }
  std::unique_ptr<CubeDef> CubeAt(std::size_t) const override {
    return std::make_unique<Definition>(cube_);
  }

 private:
  const FakeCube& cube_;
};

class AnswerCellset : public Cellset {
 public:
  explicit AnswerCellset(FakeAnswer answer) : answer_(std::move(answer)) {}
  std::size_t AxisCount() const override { return answer_.axes.size(); }
  std::size_t PositionCount(std::size_t axis) const override {
    return answer_.axes.at(axis).size();
  }
  std::size_t MembersPerPosition(std::size_t axis) const override {
    return PositionCount(axis) == 0 ? 0 : answer_.axes[axis][0].size();
  }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const override {
    return answer_.axes.at(axis).at(position).at(index);
  }
  void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                    std::span<std::string_view> captions) const override {
    for (std::size_t i = 0; i < captions.size(); ++i) {
      captions[i] = answer_.axes.at(axis).at(first + i).at(index).caption;
    }
  }
  void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                 std::span<CellState> states) const override {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      const FakeCell& cell = answer_.cells.at(first + i * step);
      numbers[i] = cell.number;
      states[i] = cell.state;
    }
  }
  std::string CellText(std::size_t ordinal) const override { return answer_.cells[ordinal].text; }
  std::string FormattedCell(std::size_t ordinal) const override { return Cell(ordinal).ToText(); }

 private:
  FakeAnswer answer_;
};

class Connection : public CubeConnection {
 public:
  explicit Connection(FakeCube& cube) : cube_(cube) {}
  std::string DefaultDatabase() const override { return cube_.default_catalog; }
  std::vector<std::string> CatalogNames() const override { return cube_.catalogs; }
  std::unique_ptr<CubeCatalog> Structure() override { return std::make_unique<Catalog>(cube_); }
  std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
    cube_.queries.push_back(mdx);
    return std::make_unique<AnswerCellset>(cube_.answer(mdx));
  }
  void Close() override {
    cube_.connection_calls.push_back("close");
    cube_.on_close();
  }

 private:
  FakeCube& cube_;
};

}  // namespace fake_cube

class FakeCubeProvider : public CubeProvider {
 public:
  explicit FakeCubeProvider(FakeCube& cube) : cube_(cube) {}
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop*) override {
    cube_.connection_calls.push_back("connect " + text);
    cube_.on_open();
    return std::make_unique<fake_cube::Connection>(cube_);
  }

 private:
  FakeCube& cube_;
};

}  // namespace vok::test
