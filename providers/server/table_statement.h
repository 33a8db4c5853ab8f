// The statement that asks a database server a question about a table.
#pragma once

#include <functional>
#include <string>

#include "platform/table_server.h"

namespace vok::server {

/// What differs from server to server.
struct SqlDialect {
  std::function<std::string(const std::string& text)> name;  ///< quoted
  /// A key as it is compared with the column.
  std::function<std::string(const std::string& column, const std::string& key)> key;
  /// Of a column, exactly.
  std::function<std::string(const std::string& column)> sum;
};

/// "SELECT ...", without a semicolon.
std::string TableStatement(const TableQuestion& question, const SqlDialect& dialect);

/// `"schema"."table"`.
std::string QuotedTable(const TableName& table, const SqlDialect& dialect);

}  // namespace vok::server
