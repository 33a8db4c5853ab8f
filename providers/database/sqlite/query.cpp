#include "providers/database/sqlite/query.h"

#include <sqlite3.h>

#include <limits>
#include <utility>

#include "providers/database/sqlite/store.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {

Query::Query(SqliteStore& store, const std::string& sql) : store_(store) {
  const int code = sqlite3_prepare_v2(store.Handle(), sql.data(), static_cast<int>(sql.size()),
                                      &statement_, nullptr);
  if (code != SQLITE_OK) store_.Throw(code);
}

Query::Query(Query&& other) noexcept
    : store_(other.store_), statement_(std::exchange(other.statement_, nullptr)) {}

Query::~Query() { sqlite3_finalize(statement_); }

void Query::Bind(int index, const Value& value) {
  int code = SQLITE_OK;
  if (const auto* text = value.As<std::string>()) {
    code = sqlite3_bind_text64(statement_, index, text->data(), text->size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  } else if (const auto* date = value.As<Date>()) {
    code = sqlite3_bind_double(statement_, index, date->serial);
  } else if (const auto* flag = value.As<bool>()) {
    code = sqlite3_bind_int(statement_, index, *flag ? 1 : 0);
  } else if (!value.IsNull()) {
    code = sqlite3_bind_int(statement_, index, value.ToInt32());
  }
  if (code != SQLITE_OK) store_.Throw(code);
}

bool Query::Step() {
  const int code = sqlite3_step(statement_);
  if (code != SQLITE_ROW && code != SQLITE_DONE) store_.Throw(code);
  return code == SQLITE_ROW;
}

int64_t Query::Integer(int column) const { return sqlite3_column_int64(statement_, column); }

std::string Query::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_, column);
  const int size = sqlite3_column_bytes(statement_, column);
  if (text == nullptr) return {};
  return std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
}

Value Query::Read(int column, ColumnType type) const {
  const int stored = sqlite3_column_type(statement_, column);
  if (stored == SQLITE_NULL) return type == ColumnType::kBoolean ? Value(false) : Value(Null{});
  const int64_t integer = Integer(column);
  switch (type) {
    case ColumnType::kText:
      if (stored == SQLITE_TEXT) return Text(column);
      break;
    case ColumnType::kBoolean:
      if (stored == SQLITE_INTEGER) return integer != 0;
      break;
    case ColumnType::kDate:
      if (stored == SQLITE_FLOAT) return Date{sqlite3_column_double(statement_, column)};
      break;
    case ColumnType::kInteger:
      if (stored == SQLITE_INTEGER && integer >= std::numeric_limits<int32_t>::min() &&
          integer <= std::numeric_limits<int32_t>::max()) {
        return static_cast<int32_t>(integer);
      }
      break;
  }
  ThrowUnusable(store_.file(), "it is damaged: column \"" +
                                   std::string(sqlite3_column_name(statement_, column)) +
                                   "\" holds a value of another type.");
}

}  // namespace vok
