#include "providers/database/sqlite/rows.h"

#include "platform/failure.h"
#include "providers/database/sqlite/like_pattern.h"
#include "providers/database/sqlite/query.h"

namespace vok {
namespace {

ColumnDefinition ColumnNamed(const SqliteStore& store, const TableDefinition& table,
                             const std::string& name) {
  const auto* column = FindColumn(store.locale(), table, name);
  if (column == nullptr) {
    throw Failure(failure_number::kNoColumn,
                  "No value given for one or more required parameters: table \"" + table.name +
                      "\" has no column \"" + name + "\"");
  }
  return *column;
}

std::string ListOf(const std::vector<ColumnDefinition>& columns) {
  std::string list;
  for (const ColumnDefinition& column : columns) list += ", " + Quoted(column.name);
  return list;
}

/// A statement's filter; none lets every row through. The store itself looks for an equal text, by
/// the index of the key; for a pattern every row is looked at.
class RowFilter {
 public:
  RowFilter(const SqliteStore& store, const TableDefinition& table,
            const std::optional<TextFilter>& filter) {
    if (!filter) return;
    const ColumnDefinition column = ColumnNamed(store, table, filter->column);
    if (column.type != ColumnType::kText) {
      throw Failure(
          failure_number::kWrongColumnType,
          "Data type mismatch in criteria expression: column " + column.name + " is not a text");
    }
    column_ = Quoted(column.name);
    if (filter->is_pattern) {
      pattern_.emplace(store.locale(), filter->text);
    } else {
      equal_ = filter->text;
    }
  }

  /// The rows of `table` to look at: the column that the filter wants to see, then `columns`.
  Query Rows(SqliteStore& store, const std::string& columns, const TableDefinition& table) const {
    Query query(store, "SELECT " + column_ + columns + " FROM " + Quoted(table.name) +
                           (equal_ ? " WHERE " + column_ + " = ? COLLATE vok_nocase" : "") +
                           " ORDER BY rowid");
    if (equal_) query.Bind(1, *equal_);
    return query;
  }

  bool Passes(const Query& query) const {
    if (!pattern_) return true;
    const Value value = query.Read(0, ColumnType::kText);
    const auto* text = value.As<std::string>();
    return text != nullptr && pattern_->Matches(*text);
  }

 private:
  std::string column_ = "NULL";
  std::optional<LikePattern> pattern_;
  std::optional<std::string> equal_;
};

Selection SelectRows(SqliteStore& store, const Statement& statement) {
  Selection selection{TableNamed(store, statement.table, failure_number::kNoTable), {}};
  const RowFilter filter(store, selection.table, statement.filter);
  if (!statement.columns.empty()) {
    std::vector<ColumnDefinition> columns;
    for (const auto& name : statement.columns) {
      columns.push_back(ColumnNamed(store, selection.table, name));
    }
    selection.table.columns = std::move(columns);
  }
  const auto& columns = selection.table.columns;
  Query query = filter.Rows(store, ListOf(columns), selection.table);
  while (query.Step()) {
    if (!filter.Passes(query)) continue;
    auto& row = selection.rows.emplace_back();
    for (std::size_t index = 0; index < columns.size(); ++index) {
      row.push_back(query.Read(static_cast<int>(index) + 1, columns[index].type));
    }
  }
  return selection;
}

std::vector<int64_t> RowsToDelete(SqliteStore& store, const TableDefinition& table,
                                  const RowFilter& filter) {
  std::vector<int64_t> rows;
  Query query = filter.Rows(store, ", rowid", table);
  while (query.Step()) {
    if (filter.Passes(query)) rows.push_back(query.Integer(1));
  }
  return rows;
}

void DeleteRows(SqliteStore& store, const Statement& statement) {
  WriteScope scope(store);
  const auto table = TableNamed(store, statement.table, failure_number::kNoTable);
  const RowFilter filter(store, table, statement.filter);
  for (const int64_t row : RowsToDelete(store, table, filter)) {
    store.Execute("DELETE FROM " + Quoted(table.name) + " WHERE rowid = " + std::to_string(row));
  }
  scope.Commit();
}

}  // namespace

Selection Select(SqliteStore& store, const std::string& source) {
  const Statement statement = ParseStatement(source);
  if (statement.kind != Statement::Kind::kSelect) {
    throw Failure(failure_number::kSyntax,
                  "A record set opens on a select or a table, not on \"" + source + "\"");
  }
  return SelectRows(store, statement);
}

void Run(SqliteStore& store, const std::string& text) {
  const Statement statement = ParseStatement(text);
  if (statement.kind == Statement::Kind::kDelete) {
    DeleteRows(store, statement);
  } else {
    SelectRows(store, statement);
  }
}

void Insert(SqliteStore& store, const TableDefinition& table, const std::vector<Value>& row) {
  std::string places;
  for (std::size_t index = 0; index < row.size(); ++index) places += index == 0 ? "?" : ", ?";
  WriteScope scope(store);
  Query query(store, "INSERT INTO " + Quoted(table.name) + " (" + ListOf(table.columns).substr(2) +
                         ") VALUES (" + places + ")");
  for (std::size_t index = 0; index < row.size(); ++index) {
    query.Bind(static_cast<int>(index) + 1, row[index]);
  }
  query.Step();
  scope.Commit();
}

}  // namespace vok
