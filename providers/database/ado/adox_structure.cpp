#include "providers/database/ado/adox_structure.h"

#include <algorithm>
#include <span>

namespace vok::windows {
namespace {

constexpr int32_t kNullable = 2;  // adColNullable
constexpr int32_t kNullsAllowed = 0;
constexpr int32_t kNullsDisallowed = 1;

using Columns = std::span<const ColumnDefinition>;

void Append(const Object& columns, Columns definitions) {
  for (const ColumnDefinition& column : definitions) {
    columns.Call(L"Append", column.name, static_cast<int32_t>(column.type), column.size);
  }
}

void MarkNullable(const Object& columns, Columns definitions) {
  for (std::size_t index = 0; index < definitions.size(); ++index) {
    if (!definitions[index].nullable) continue;
    columns.Child(L"Item", static_cast<int32_t>(index)).Put(L"Attributes", kNullable);
  }
}

/// How many columns stand up to the last one that is nullable: a Yes/No column that is appended
/// later is never touched by the marking.
std::size_t CountUpToNullable(Columns columns) {
  const auto last = std::find_if(columns.rbegin(), columns.rend(),
                                 [](const ColumnDefinition& column) { return column.nullable; });
  return static_cast<std::size_t>(columns.rend() - last);
}

}  // namespace

AdoxStructure::AdoxStructure(const Object& connection)
    : connection_(connection), catalog_(Object::Create("ADOX.Catalog")) {
  catalog_.PutObject(L"ActiveConnection", connection_);
}

void AdoxStructure::Create(const std::string& connection_string) {
  catalog_.Call(L"Create", connection_string);
}

Object AdoxStructure::TableNamed(const std::string& name) const {
  return catalog_.Child(L"Tables").Child(L"Item", name);
}

std::vector<std::string> AdoxStructure::TableNames() const {
  const Object tables = catalog_.Child(L"Tables");
  std::vector<std::string> names(static_cast<std::size_t>(tables.Read(L"Count").ToInt32()));
  for (std::size_t index = 0; index < names.size(); ++index) {
    const Object table = tables.Child(L"Item", static_cast<int32_t>(index));
    names[index] = table.Read(L"Name").ToText();
  }
  return names;
}

int32_t AdoxStructure::ColumnCount(const std::string& table) const {
  return TableNamed(table).Child(L"Columns").Read(L"Count").ToInt32();
}

void AdoxStructure::AppendTable(const TableDefinition& table) {
  const Object made = Object::Create("ADOX.Table");
  made.Put(L"Name", table.name);
  made.PutObject(L"ParentCatalog", catalog_);
  const Object columns = made.Child(L"Columns");
  const Columns all(table.columns);
  const std::size_t up_to_nullable = CountUpToNullable(all);
  Append(columns, all.first(up_to_nullable));
  MarkNullable(columns, all.first(up_to_nullable));
  Append(columns, all.subspan(up_to_nullable));
  catalog_.Child(L"Tables").Call(L"Append", made);
}

void AdoxStructure::AppendColumn(const std::string& table, const ColumnDefinition& column) {
  const Object columns = TableNamed(table).Child(L"Columns");
  Append(columns, Columns(&column, 1));
  if (column.nullable) columns.Child(L"Item", column.name).Put(L"Attributes", kNullable);
}

bool AdoxStructure::AllowEmptyTexts(const std::string& table,
                                    const std::vector<std::string>& columns) {
  bool changed = false;
  const Object all = TableNamed(table).Child(L"Columns");
  for (const std::string& column : columns) {
    const Object allowed = all.Child(L"Item", column)
                               .Child(L"Properties")
                               .Child(L"Item", "Jet OLEDB:Allow Zero Length");
    if (allowed.Read(L"Value").ToBoolean()) continue;
    allowed.Put(L"Value", true);
    changed = true;
  }
  return changed;
}

void AdoxStructure::AppendIndex(const std::string& table, const IndexDefinition& index) {
  const Object made = Object::Create("ADOX.Index");
  made.Put(L"Name", index.name);
  made.Child(L"Columns").Call(L"Append", index.column, static_cast<int32_t>(ColumnType::kText));
  made.Put(L"PrimaryKey", index.primary_key);
  made.Put(L"Unique", index.unique);
  made.Put(L"Clustered", index.clustered);
  made.Put(L"IndexNulls", index.allow_nulls ? kNullsAllowed : kNullsDisallowed);
  TableNamed(table).Child(L"Indexes").Call(L"Append", made);
}

}  // namespace vok::windows
