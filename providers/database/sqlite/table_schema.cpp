#include "providers/database/sqlite/table_schema.h"

#include "platform/calendar.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "providers/database/sqlite/query.h"
#include "providers/database/sqlite/rows.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {
namespace {

int32_t SizeOf(const ColumnDefinition& column) {
  return column.size > 0 ? column.size : kDefaultTextSize;
}

std::string ColumnSql(const ColumnDefinition& column) {
  const std::string name = Quoted(column.name);
  switch (column.type) {
    case ColumnType::kBoolean:
      return name + " INT NOT NULL DEFAULT 0 CHECK (" + name + " IN (0, 1))";
    case ColumnType::kInteger:
      return name + " INT CHECK (" + name + " BETWEEN -2147483648 AND 2147483647)";
    case ColumnType::kDate:
      return name + " REAL CHECK (" + name + " >= " + std::to_string(kFirstDay) + " AND " + name +
             " < " + std::to_string(kPastDays) + ")";
    case ColumnType::kText:
      break;
  }
  // Characters here, never more than the units that are counted before a text gets this far.
  return name + " TEXT CHECK (length(" + name + ") <= " + std::to_string(SizeOf(column)) + ")";
}

ColumnType TypeOf(const SqliteStore& store, int64_t number) {
  for (const auto type :
       {ColumnType::kInteger, ColumnType::kDate, ColumnType::kBoolean, ColumnType::kText}) {
    if (static_cast<int64_t>(type) == number) return type;
  }
  ThrowUnusable(store.file(),
                "it is damaged: a column is of the unknown type " + std::to_string(number) + ".");
}

[[noreturn]] void ThrowExists(const std::string& kind, const std::string& name) {
  throw Failure(failure_number::kObjectExists, kind + " \"" + name + "\" exists already");
}

void RecordColumn(SqliteStore& store, const std::string& table, const ColumnDefinition& column) {
  Query query(store, "INSERT INTO vok_columns VALUES (?, ?, ?, ?, ?)");
  query.Bind(1, table);
  query.Bind(2, column.name);
  query.Bind(3, static_cast<int32_t>(column.type));
  query.Bind(4, column.size);
  query.Bind(5, column.nullable);
  query.Step();
}

bool IndexExists(SqliteStore& store, const std::string& name) {
  Query query(store,
              "SELECT 1 FROM sqlite_schema WHERE type = 'index' AND name = ? COLLATE vok_nocase");
  query.Bind(1, name);
  return query.Step();
}

void ForbidNulls(SqliteStore& store, const std::string& table, const std::string& column,
                 const std::string& index) {
  store.Execute("CREATE TRIGGER " + Quoted(index + ".nulls") + " BEFORE INSERT ON " +
                Quoted(table) + " WHEN NEW." + Quoted(column) +
                " IS NULL BEGIN SELECT RAISE(ABORT, 'the key of a row cannot be NULL'); END");
}

Date ToStoredDate(const Locale& locale, const ColumnDefinition& column, const Value& value) {
  Date date;
  if (const auto* text = value.As<std::string>()) {
    const auto read = locale.ParseDate(*text);
    if (!read) {
      throw Failure(failure_number::kTypeMismatch,
                    "Type mismatch: \"" + *text + "\" is not a date for column " + column.name);
    }
    date = *read;
  } else {
    date = value.ToDate();
  }
  if (!IsInCalendar(date)) {
    throw Failure(failure_number::kColumnOverflow,
                  "The date for column " + column.name + " is not within the years 100 to 9999");
  }
  return date;
}

std::string ToStoredText(const Locale& locale, const ColumnDefinition& column, const Value& value) {
  const auto* date = value.As<Date>();
  std::string text = date != nullptr ? locale.DateText(*date) : value.ToText();
  const std::size_t length = Utf16Length(text);
  const auto size = static_cast<std::size_t>(SizeOf(column));
  if (length > size) {
    throw Failure(failure_number::kColumnOverflow,
                  "The text for column " + column.name + " is " + std::to_string(length) +
                      " characters long, at most " + std::to_string(size) + " fit. Shorten it: \"" +
                      std::string(Utf16Prefix(text, 60)) + "…\"");
  }
  return text;
}

/// What a text that misses a table adds: those that there are.
std::string Known(SqliteStore& store) {
  std::string known;
  for (const std::string& name : TableNames(store)) known += (known.empty() ? "" : ", ") + name;
  if (known.empty()) return ". It has none: it was made in part. Move it away and make it anew.";
  return ". It has: " + known + ".";
}

}  // namespace

std::vector<std::string> TableNames(SqliteStore& store) {
  std::vector<std::string> names;
  Query query(store, "SELECT table_name FROM vok_columns GROUP BY table_name ORDER BY min(rowid)");
  while (query.Step()) names.push_back(query.Text(0));
  return names;
}

std::optional<TableDefinition> FindTable(SqliteStore& store, const std::string& name) {
  TableDefinition table;
  Query query(store,
              "SELECT table_name, column_name, type, size, nullable FROM vok_columns WHERE "
              "table_name = ? ORDER BY rowid");
  query.Bind(1, name);
  while (query.Step()) {
    table.name = query.Text(0);
    table.columns.push_back({query.Text(1), TypeOf(store, query.Integer(2)),
                             static_cast<int32_t>(query.Integer(3)), query.Integer(4) != 0});
  }
  if (table.columns.empty()) return std::nullopt;
  return table;
}

TableDefinition TableNamed(SqliteStore& store, const std::string& name, int32_t missing) {
  auto table = FindTable(store, name);
  if (!table) {
    throw Failure(missing, "Settings database \"" + store.file() +
                               "\": could not find the table \"" + name + "\"" + Known(store));
  }
  return *std::move(table);
}

const ColumnDefinition* FindColumn(const Locale& locale, const TableDefinition& table,
                                   const std::string& name) {
  for (const ColumnDefinition& column : table.columns) {
    if (EqualNoCase(locale, column.name, name)) return &column;
  }
  return nullptr;
}

void AddTable(SqliteStore& store, const TableDefinition& table) {
  WriteScope scope(store);
  if (FindTable(store, table.name)) ThrowExists("Table", table.name);
  std::string sql;
  for (const ColumnDefinition& column : table.columns) {
    sql += (sql.empty() ? "" : ", ") + ColumnSql(column);
  }
  store.Execute("CREATE TABLE " + Quoted(table.name) + " (" + sql + ") STRICT");
  for (const ColumnDefinition& column : table.columns) RecordColumn(store, table.name, column);
  scope.Commit();
}

void AddColumn(SqliteStore& store, const std::string& table, const ColumnDefinition& column) {
  WriteScope scope(store);
  const auto existing = TableNamed(store, table, failure_number::kItemNotFound);
  if (FindColumn(store.locale(), existing, column.name)) ThrowExists("Column", column.name);
  store.Execute("ALTER TABLE " + Quoted(existing.name) + " ADD COLUMN " + ColumnSql(column));
  if (column.type == ColumnType::kText && !column.nullable) {
    store.Execute("UPDATE " + Quoted(existing.name) + " SET " + Quoted(column.name) + " = ''");
  }
  RecordColumn(store, existing.name, column);
  scope.Commit();
}

void AddIndex(SqliteStore& store, const std::string& table, const IndexDefinition& index) {
  WriteScope scope(store);
  const auto existing = TableNamed(store, table, failure_number::kItemNotFound);
  const auto* column = FindColumn(store.locale(), existing, index.column);
  if (column == nullptr) {
    throw Failure(failure_number::kItemNotFound,
                  "Table \"" + existing.name + "\" has no column \"" + index.column + "\"");
  }
  const std::string name = existing.name + "." + index.name;
  if (IndexExists(store, name)) ThrowExists("Index", name);
  const bool unique = index.unique || index.primary_key;
  store.Execute(std::string(unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + Quoted(name) +
                " ON " + Quoted(existing.name) + " (" + Quoted(column->name) +
                " COLLATE vok_nocase)");
  if (!index.allow_nulls) ForbidNulls(store, existing.name, column->name, name);
  scope.Commit();
}

Value ToStored(const Locale& locale, const ColumnDefinition& column, const Value& value) {
  const bool none = value.IsEmpty() || value.IsNull();
  if (column.type == ColumnType::kBoolean) return none ? false : value.ToBoolean();
  if (none) return Null{};
  switch (column.type) {
    case ColumnType::kInteger:
      return value.ToInt32();
    case ColumnType::kDate:
      return ToStoredDate(locale, column, value);
    default:
      return ToStoredText(locale, column, value);
  }
}

}  // namespace vok
