#include "providers/cube/adomd/adomd_structure.h"

#include <utility>

#include "platform/failure.h"

namespace vok::windows {
namespace {

constexpr int32_t kAllRemainingRows = -1;

using Rows = std::vector<std::vector<std::string>>;

std::string Text(const VARIANT& cell) {
  const Value value = FromVariant(cell);
  return value.IsNull() ? std::string() : value.ToText();
}

/// From the array that holds, for each row, its columns one after the other.
Rows RowsIn(SAFEARRAY* array, std::size_t columns) {
  LONG first = 0, last = -1;
  if (SafeArrayGetDim(array) != 2 || FAILED(SafeArrayGetLBound(array, 2, &first)) ||
      FAILED(SafeArrayGetUBound(array, 2, &last)) || array->rgsabound[1].cElements != columns) {
    throw Failure(failure_number::kTypeMismatch,
                  "Type mismatch: the cube provider's schema rows have another shape than asked");
  }
  Rows rows(static_cast<std::size_t>(last - first + 1), std::vector<std::string>(columns));
  const ArrayAccess<VARIANT> cells(array);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      rows[row][column] = Text(cells[row * columns + column]);
    }
  }
  return rows;
}

Object OpenSchema(const Object& connection, int32_t schema, const Value::Array& restrictions) {
  if (restrictions.empty()) return connection.Child(L"OpenSchema", schema);
  return connection.Child(L"OpenSchema", schema, restrictions);
}

/// A collection of the data objects, counted from 0.
class Collection {
 public:
  explicit Collection(Object items) : items_(std::move(items)) {}
  std::size_t Count() const { return static_cast<std::size_t>(items_.Read(L"Count").ToInt32()); }
  Object At(std::size_t index) const { return items_.Child(L"Item", static_cast<int32_t>(index)); }

 private:
  Object items_;
};

std::string NameOf(const Object& object) { return object.Read(L"Name").ToText(); }
std::string UniqueNameOf(const Object& object) { return object.Read(L"UniqueName").ToText(); }

/// What all parts of one cube share.
struct CubeContext {
  const Locale& locale;
  Object connection;
  std::string cube;
};

constexpr const char* kAllMember = "2";  // MDMEMBER_TYPE_ALL

class AdomdLevel : public CubeLevel {
 public:
  AdomdLevel(Object level, std::shared_ptr<const LevelMembers> members, std::size_t index)
      : level_(std::move(level)), members_(std::move(members)), index_(index) {}
  std::string Name() const override { return NameOf(level_); }
  std::string UniqueName() const override { return UniqueNameOf(level_); }
  bool IsAll() const override {
    const auto& members = members_->At(index_);
    return members.size() == 1 && members.front().type == kAllMember;
  }
  std::size_t MemberCount() const override { return members_->At(index_).size(); }
  std::unique_ptr<CubeMember> MemberAt(std::size_t index) const override {
    return std::make_unique<LevelMember>(members_, index_, members_->At(index_).at(index));
  }

 private:
  Object level_;
  std::shared_ptr<const LevelMembers> members_;
  std::size_t index_;
};

class AdomdHierarchy : public CubeHierarchy {
 public:
  AdomdHierarchy(Object hierarchy, const CubeContext& context)
      : hierarchy_(std::move(hierarchy)), levels_(hierarchy_.Child(L"Levels")) {
    std::vector<std::string> names(levels_.Count());
    for (std::size_t index = 0; index < names.size(); ++index) {
      names[index] = UniqueNameOf(levels_.At(index));
    }
    members_ = std::make_shared<LevelMembers>(context.connection, context.cube, std::move(names));
  }
  std::string Name() const override { return NameOf(hierarchy_); }
  std::string UniqueName() const override { return UniqueNameOf(hierarchy_); }
  std::size_t LevelCount() const override { return levels_.Count(); }
  std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const override {
    return std::make_unique<AdomdLevel>(levels_.At(index), members_, index);
  }

 private:
  Object hierarchy_;
  Collection levels_;
  std::shared_ptr<const LevelMembers> members_;
};

class AdomdDimension : public CubeDimension {
 public:
  AdomdDimension(Object dimension, const CubeContext& context)
      : dimension_(std::move(dimension)),
        context_(context),
        hierarchies_(dimension_.Child(L"Hierarchies")) {}
  std::string Name() const override { return NameOf(dimension_); }
  std::string UniqueName() const override { return UniqueNameOf(dimension_); }
  std::size_t HierarchyCount() const override { return hierarchies_.Count(); }
  std::unique_ptr<CubeHierarchy> HierarchyAt(std::size_t index) const override {
    return std::make_unique<AdomdHierarchy>(hierarchies_.At(index), context_);
  }

 private:
  Object dimension_;
  CubeContext context_;
  Collection hierarchies_;
};

class AdomdCube : public CubeDef {
 public:
  AdomdCube(Object cube, const Locale& locale, Object connection)
      : cube_(std::move(cube)),
        context_{locale, std::move(connection), NameOf(cube_)},
        dimensions_(cube_.Child(L"Dimensions")) {}
  std::string Name() const override { return context_.cube; }
  std::size_t DimensionCount() const override { return dimensions_.Count(); }
  std::unique_ptr<CubeDimension> DimensionAt(std::size_t index) const override {
    return std::make_unique<AdomdDimension>(dimensions_.At(index), context_);
  }
  std::unique_ptr<CubeDimension> FindDimension(const std::string& name) const override {
    const std::size_t count = dimensions_.Count();
    for (std::size_t index = 0; index < count; ++index) {
      Object dimension = dimensions_.At(index);
      if (EqualNoCase(context_.locale, NameOf(dimension), name)) {
        return std::make_unique<AdomdDimension>(std::move(dimension), context_);
      }
    }
    return nullptr;
  }

 private:
  Object cube_;
  CubeContext context_;
  Collection dimensions_;
};

}  // namespace

Rows SchemaRows(const Object& connection, int32_t schema, const Value::Array& restrictions,
                const std::vector<std::string>& columns) {
  const Object records = OpenSchema(connection, schema, restrictions);
  Rows rows;
  if (!records.Read(L"EOF").ToBoolean()) {
    const Value::Array names(columns.begin(), columns.end());
    const Variant table = records.Call(L"GetRows", kAllRemainingRows, LeftOut(), names);
    if (table.Get()->vt == (VT_ARRAY | VT_VARIANT)) {
      rows = RowsIn(table.Get()->parray, columns.size());
    }
  }
  records.Call(L"Close");
  return rows;
}

LevelMembers::LevelMembers(Object connection, std::string cube, std::vector<std::string> levels)
    : connection_(std::move(connection)), cube_(std::move(cube)) {
  for (std::string& level : levels) levels_.push_back({std::move(level), {}, {}});
}

LevelMembers::Level& LevelMembers::Read(std::size_t index) const {
  if (index >= levels_.size()) {
    throw Failure(failure_number::kItemNotFound, "The cube's hierarchy has no such level.");
  }
  Level& level = levels_[index];
  if (level.members) return level;
  // Catalog and schema are the connection's; the dimension and the hierarchy follow from the level.
  const Value::Array restrictions{Value(), Value(), cube_, Value(), Value(), level.unique_name};
  std::vector<MemberRow> members;
  // The rows come in the order of the level. MEMBER_ORDINAL says nothing of it: providers give 0.
  for (auto& row : SchemaRows(connection_, kMembersSchema, restrictions,
                              {"MEMBER_NAME", "MEMBER_CAPTION", "MEMBER_UNIQUE_NAME",
                               "PARENT_UNIQUE_NAME", "MEMBER_TYPE"})) {
    level.by_unique_name.emplace(row[2], members.size());
    members.push_back({std::move(row[0]), std::move(row[1]), std::move(row[2]), std::move(row[3]),
                       std::move(row[4])});
  }
  level.members = std::move(members);
  return level;
}

const std::vector<MemberRow>& LevelMembers::At(std::size_t level) const {
  return *Read(level).members;
}

const MemberRow* LevelMembers::Find(std::size_t level, const std::string& unique_name) const {
  const Level& read = Read(level);
  const auto found = read.by_unique_name.find(unique_name);
  return found == read.by_unique_name.end() ? nullptr : &(*read.members)[found->second];
}

std::unique_ptr<CubeMember> LevelMember::Parent() const {
  if (level_ == 0 || row_.parent.empty()) return nullptr;
  const MemberRow* parent = members_->Find(level_ - 1, row_.parent);
  if (parent == nullptr) return nullptr;
  return std::make_unique<LevelMember>(members_, level_ - 1, *parent);
}

AdomdCatalog::AdomdCatalog(const Locale& locale, Object connection)
    : locale_(locale), connection_(std::move(connection)) {
  catalog_.Put(L"ActiveConnection", connection_.Read(L"ConnectionString").ToText());
}

std::size_t AdomdCatalog::CubeCount() const {
  return Collection(catalog_.Child(L"CubeDefs")).Count();
}

std::unique_ptr<CubeDef> AdomdCatalog::CubeAt(std::size_t index) const {
  return std::make_unique<AdomdCube>(Collection(catalog_.Child(L"CubeDefs")).At(index), locale_,
                                     connection_);
}

}  // namespace vok::windows
