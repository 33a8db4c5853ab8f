// Multidimensional data access, in the words of the platform's data objects (ADO, ADO MD).
//
// Failures carry the provider's numbers: 3265 for an item that a collection does not hold,
// -2147217900 for MDX that is not understood (with line and column), -2147467259 for a cube that
// cannot be opened or read. Names are compared without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/query_stop.h"
#include "platform/value.h"

namespace vok {

class CubeMember {
 public:
  virtual ~CubeMember() = default;
  virtual std::string Name() const = 0;
  virtual std::string Caption() const = 0;
  /// As it is to appear in MDX.
  virtual std::string UniqueName() const = 0;
  /// nullptr at the top level.
  virtual std::unique_ptr<CubeMember> Parent() const = 0;
  /// Whether the cube computes it by a formula.
  virtual bool IsCalculated() const { return false; }
  /// How a measure's numbers are to be shown, such as "#,##0.00"; "" where the provider does not
  /// tell.
  virtual std::string FormatString() const { return {}; }
};

/// The span of time that each member of a level stands for. `kOther`: half-years, quarters or
/// weeks.
enum class LevelTime : uint8_t { kUntold, kYears, kMonths, kDays, kOther };

/// Members stand in the cube's order, counted from 0.
class CubeLevel {
 public:
  virtual ~CubeLevel() = default;
  virtual std::string Name() const = 0;
  virtual std::string UniqueName() const = 0;
  /// Whether its one member stands for all of the hierarchy. Its name does not tell.
  virtual bool IsAll() const = 0;
  /// `kUntold` where the provider or the cube does not tell.
  virtual LevelTime Time() const { return LevelTime::kUntold; }
  virtual std::size_t MemberCount() const = 0;
  virtual std::unique_ptr<CubeMember> MemberAt(std::size_t index) const = 0;
};

/// Levels are counted from 0, the top; the all level, where there is one, is level 0.
class CubeHierarchy {
 public:
  virtual ~CubeHierarchy() = default;
  virtual std::string Name() const = 0;
  virtual std::string UniqueName() const = 0;
  virtual std::size_t LevelCount() const = 0;
  virtual std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const = 0;
};

class CubeDimension {
 public:
  virtual ~CubeDimension() = default;
  virtual std::string Name() const = 0;
  virtual std::string UniqueName() const = 0;
  virtual std::size_t HierarchyCount() const = 0;
  virtual std::unique_ptr<CubeHierarchy> HierarchyAt(std::size_t index) const = 0;
};

/// A cube's structure. "Measures" is one of its dimensions, the first.
class CubeDef {
 public:
  virtual ~CubeDef() = default;
  virtual std::string Name() const = 0;
  virtual std::size_t DimensionCount() const = 0;
  virtual std::unique_ptr<CubeDimension> DimensionAt(std::size_t index) const = 0;
  /// nullptr when the cube has no dimension of this name.
  virtual std::unique_ptr<CubeDimension> FindDimension(const std::string& name) const = 0;
  /// How many facts it was built from; nothing where the provider does not tell.
  virtual std::optional<uint64_t> FactCount() const { return std::nullopt; }
  /// Unique names of the members that the cube computes, of all dimensions; none where the provider
  /// does not tell.
  virtual std::vector<std::string> CalculatedMembers() const { return {}; }
};

/// The cubes of one catalog.
class CubeCatalog {
 public:
  virtual ~CubeCatalog() = default;
  virtual std::size_t CubeCount() const = 0;
  virtual std::unique_ptr<CubeDef> CubeAt(std::size_t index) const = 0;
};

/// What a cell holds. A query on facts gives the first two, formulas the next two; servers tell
/// whole numbers of 32 bits apart, and cells whose computation failed.
enum class CellState : uint8_t { kEmpty, kNumber, kText, kLogical, kInteger, kError };

/// A member as an axis shows it.
struct AxisMember {
  std::string name;
  std::string caption;
  std::string unique_name;
  std::string level_name;
};

/// The answer to a query. It stays readable after its connection is gone. Axes, and the positions
/// of an axis, are counted from 0; a position is a tuple of members, one per hierarchy. Cells are
/// counted from 0, axis 0 runs fastest. Failures: 3265 for an axis that is not there, 9 for a
/// position, a member or a cell that is not there.
class Cellset {
 public:
  virtual ~Cellset() = default;
  virtual std::size_t AxisCount() const = 0;
  virtual std::size_t PositionCount(std::size_t axis) const = 0;
  virtual std::size_t MembersPerPosition(std::size_t axis) const = 0;
  virtual AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const = 0;
  /// The captions of member `index` of the positions `first`, `first` + 1 and so on. They last
  /// until the next call.
  virtual void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                            std::span<std::string_view> captions) const = 0;

  /// The cells `first`, `first + step` and so on into two lists of one length: all of a column,
  /// when `step` is the number of columns. The number is 1 or 0 for a logical value, 0 where there
  /// is none.
  virtual void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                         std::span<CellState> states) const = 0;
  /// The text of a cell that is one, or what is told of an error.
  virtual std::string CellText(std::size_t ordinal) const = 0;
  /// One cell. Empty value: no facts. Otherwise a number, a logical value, a text or a `CellError`.
  Value Cell(std::size_t ordinal) const;
  /// The cell's value in its format, "" for an empty cell.
  virtual std::string FormattedCell(std::size_t ordinal) const = 0;
};

/// Open from its making to its end. What it gave out stays readable after it.
class CubeConnection {
 public:
  virtual ~CubeConnection() = default;
  virtual std::string DefaultDatabase() const = 0;
  /// Whether later runs may use it, too, since what it shows does not change meanwhile.
  virtual bool ServesManyRuns() const { return true; }
  /// The catalogs schema rowset: the values of CATALOG_NAME, in order.
  virtual std::vector<std::string> CatalogNames() const = 0;
  /// The structure of the catalog that the connection text names, else of the default one.
  virtual std::unique_ptr<CubeCatalog> Structure() = 0;
  virtual std::unique_ptr<Cellset> Execute(const std::string& mdx) = 0;
  /// Ends the connection; neither it nor its answers are asked anything afterwards. The destructor
  /// does so too and leaves the answers, but cannot tell a failure.
  virtual void Close() {}
};

class CubeProvider {
 public:
  virtual ~CubeProvider() = default;
  /// Connects with the text of a connection. `stop` ends the connecting and each query that follows
  /// with failure `kQueryCancelled`; nullptr: nothing does. It outlives the connection; answers may
  /// outlive it. A provider that cannot stop a query passes over it.
  virtual std::unique_ptr<CubeConnection> Connect(const std::string& text,
                                                  const QueryStop* stop) = 0;
};

/// For providers: failure 3265 for an index of their structure beyond the end. `what` names the
/// item, such as "The member of level [QeL].[QeL]".
void CheckCubeIndex(std::size_t index, std::size_t count, const std::string& what);

}  // namespace vok

namespace vok::cube_text {

/// The last part of the name without its brackets, "]]" made "]". Nothing can be told from a part
/// that is a key (&[17]): the result is then `otherwise`, as it is for a name without brackets.
std::string LastPart(std::string_view unique_name, std::string_view otherwise);

}  // namespace vok::cube_text
