// The statement that asks a database server a question about a table.
#pragma once

#include <functional>
#include <string>

#include "platform/table_question.h"

namespace vok::server {

/// What differs from server to server.
struct SqlDialect {
  std::function<std::string(const std::string& text)> name;  ///< quoted
  /// A key as it is compared with the column.
  std::function<std::string(const std::string& column, const std::string& key)> key;
  /// Of a column, exactly.
  std::function<std::string(const std::string& column)> sum;
  std::string text_of;  ///< the function that makes texts of values: "toString"
};

/// "SELECT ...", without a semicolon.
std::string TableStatement(const TableQuestion& question, const SqlDialect& dialect);

/// `"schema"."table"`.
std::string QuotedTable(const TableName& table, const SqlDialect& dialect);

/// Whether the text is such as "-12.5", which may stand in a statement as it is.
bool IsPlainNumber(const std::string& text);

}  // namespace vok::server
