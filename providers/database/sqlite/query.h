// One prepared statement of the store.
#pragma once

#include <cstdint>
#include <string>

#include "platform/database.h"
#include "platform/value.h"

struct sqlite3_stmt;

namespace vok {

class SqliteStore;

/// Needs its store while it lives.
class Query {
 public:
  /// `sql` is the provider's own, never a user's.
  Query(SqliteStore& store, const std::string& sql);
  Query(const Query&) = delete;
  Query(Query&& other) noexcept;
  Query& operator=(const Query&) = delete;
  ~Query();

  /// Parameters are counted from 1.
  void Bind(int index, const Value& value);
  /// True when there is a row.
  bool Step();

  /// Columns are counted from 0.
  int64_t Integer(int column) const;
  std::string Text(int column) const;
  /// The column as a value of the declared type. Fails with -2147467259 when the store holds
  /// something else.
  Value Read(int column, ColumnType type) const;

 private:
  SqliteStore& store_;
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace vok
