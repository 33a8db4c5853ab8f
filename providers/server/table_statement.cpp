#include "providers/server/table_statement.h"

#include <utility>

namespace vok::server {
namespace {

std::string Asked(const AskedColumn& column, const SqlDialect& dialect) {
  if (column.name.empty()) return "count(*)";
  std::string name = dialect.name(column.name);
  switch (column.gathering) {
    case Gathering::kNone:
      return name;
    case Gathering::kSum:
      return dialect.sum(column.name);
    case Gathering::kCount:
      return "count(" + name + ")";
    case Gathering::kLeast:
      return "min(" + name + ")";
    case Gathering::kLargest:
      return "max(" + name + ")";
  }
  return {};
}

}  // namespace

std::string TableStatement(const TableQuestion& question, const SqlDialect& dialect) {
  std::string select;
  std::string groups;
  for (const AskedColumn& column : question.columns) {
    const std::string asked = Asked(column, dialect);
    select += (select.empty() ? "SELECT " : ", ") + asked;
    if (column.gathering != Gathering::kNone) continue;
    groups += (groups.empty() ? " GROUP BY " : ", ") + asked;
  }
  select += " FROM " + QuotedTable(question.table, dialect);
  const std::string& key = question.key_column;
  const char* before = " WHERE ";
  for (const KeyRange& range : question.ranges) {
    const std::string name = dialect.name(key);
    select += std::exchange(before, " OR ") + name + " >= " + dialect.key(key, range.low);
    if (!range.high.empty()) select += " AND " + name + " <= " + dialect.key(key, range.high);
  }
  return IsGathered(question) ? select + groups : select;
}

std::string QuotedTable(const TableName& table, const SqlDialect& dialect) {
  return (table.schema.empty() ? "" : dialect.name(table.schema) + ".") + dialect.name(table.name);
}

}  // namespace vok::server
