// Multidimensional data access, in the words of the platform's data objects (ADO, ADO MD).
//
// Failures carry the provider's numbers: 3265 for an item that a collection does not hold,
// -2147217900 for MDX that is not understood (with line and column), -2147467259 for a cube that
// cannot be opened or read. Names are compared without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
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
};

/// Members stand in the cube's order, counted from 0.
class CubeLevel {
 public:
  virtual ~CubeLevel() = default;
  virtual std::string Name() const = 0;
  virtual std::string UniqueName() const = 0;
  /// Whether its one member stands for all of the hierarchy. Its name does not tell.
  virtual bool IsAll() const = 0;
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
};

/// The failure of a query that `CubeConnection::Cancel` ended (DB_E_CANCELED).
inline constexpr int32_t kQueryCancelled = -2147217842;

class CubeConnection {
 public:
  virtual ~CubeConnection() = default;
  virtual std::string ConnectionString() const = 0;
  virtual void SetConnectionString(const std::string& text) = 0;
  virtual void SetCursorLocation(CursorLocation location) = 0;
  /// An empty `connection_string` means the one that was set.
  virtual void Open(const std::string& connection_string, const std::string& user,
                    const std::string& password, int32_t options) = 0;
  virtual void Close() = 0;
  /// Ends the query that runs on the connection, and those that follow until it is opened again:
  /// failure `kQueryCancelled`. May be called from any thread and from a signal handler.
  /// Connections that cannot stop a query pass over it.
  virtual void Cancel() {}
  virtual std::string DefaultDatabase() const = 0;
  /// The catalogs schema rowset: the values of CATALOG_NAME, in order.
  virtual std::vector<std::string> CatalogNames() const = 0;
};

/// The structure of the catalog that a connection names.
class CubeCatalog {
 public:
  virtual ~CubeCatalog() = default;
  virtual void SetActiveConnection(CubeConnection& connection) = 0;
  virtual std::size_t CubeCount() const = 0;
  virtual std::unique_ptr<CubeDef> CubeAt(std::size_t index) const = 0;
};

/// A member as an axis shows it.
struct AxisMember {
  std::string name;
  std::string caption;
  std::string unique_name;
  std::string level_name;
};

/// One axis of a cellset: positions counted from 0, each a tuple of members, one per hierarchy.
class CellsetAxis {
 public:
  virtual ~CellsetAxis() = default;
  virtual std::size_t PositionCount() const = 0;
  virtual std::size_t MembersPerPosition() const = 0;
  virtual AxisMember MemberAt(std::size_t position, std::size_t index) const = 0;
};

/// The answer to a query. It stays readable after its connection is gone.
class Cellset {
 public:
  virtual ~Cellset() = default;
  virtual void SetActiveConnection(CubeConnection& connection) = 0;
  virtual void SetSource(const std::string& mdx) = 0;
  /// Runs the source.
  virtual void Open() = 0;
  virtual void Close() = 0;
  virtual std::size_t AxisCount() const = 0;
  virtual const CellsetAxis& AxisAt(std::size_t index) const = 0;
  /// The cell by ordinal: axis 0 runs fastest. Empty value: no facts. Otherwise a number, a text or
  /// a `CellError`.
  virtual Value Cell(std::size_t ordinal) const = 0;
  /// The cell's value in its format, "" for an empty cell.
  virtual std::string FormattedCell(std::size_t ordinal) const = 0;
};

class CubeServices {
 public:
  virtual ~CubeServices() = default;
  virtual std::unique_ptr<CubeConnection> NewConnection() = 0;
  virtual std::unique_ptr<CubeCatalog> NewCatalog() = 0;
  virtual std::unique_ptr<Cellset> NewCellset() = 0;
};

}  // namespace vok
