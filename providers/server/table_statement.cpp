#include "providers/server/table_statement.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace vok::server {
namespace {

std::string Joined(const std::vector<std::string>& parts, std::string_view between) {
  std::string text;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) text += between;
    text += part;
  }
  return text;
}

class Statement {
 public:
  Statement(const TableQuestion& question, const SqlDialect& dialect)
      : question_(question), dialect_(dialect) {}

  std::string Text() const {
    std::vector<std::string> fields;
    std::vector<std::string> groups;
    for (const AskedColumn& column : question_.columns) {
      fields.push_back(Asked(column));
      if (column.gathering == Gathering::kNone) groups.push_back(fields.back());
    }
    if (!question_.buckets.empty()) {
      fields.push_back(Bucket());
      groups.push_back(fields.back());
    }
    for (const KeyCondition& each : question_.expected) fields.push_back(Unexpected(each));
    std::string text =
        "SELECT " + Joined(fields, ", ") + " FROM " + QuotedTable(question_.table, dialect_);
    std::vector<std::string> conditions;
    for (const KeyCondition& condition : question_.where) conditions.push_back(Meets(condition));
    if (!conditions.empty()) text += " WHERE " + Joined(conditions, " AND ");
    if (IsGathered(question_) && !groups.empty()) text += " GROUP BY " + Joined(groups, ", ");
    if (question_.most_rows > 0) text += " LIMIT " + std::to_string(question_.most_rows + 1);
    return text;
  }

 private:
  std::string Asked(const AskedColumn& column) const {
    if (column.name.empty()) return "count(*)";
    std::string name = dialect_.name(column.name);
    switch (column.gathering) {
      case Gathering::kNone:
        return name;
      case Gathering::kSum:
        return dialect_.sum(column.name);
      case Gathering::kCount:
        return "count(" + name + ")";
      case Gathering::kLeast:
        return "min(" + name + ")";
      case Gathering::kLargest:
        return "max(" + name + ")";
    }
    return {};
  }

  std::string Bucket() const {
    std::string text = "CASE";
    for (std::size_t index = 0; index < question_.buckets.size(); ++index) {
      text += " WHEN " + Meets(question_.buckets[index]) + " THEN " + std::to_string(index);
    }
    return text + " END";
  }

  /// A condition on a NULL is neither true nor false: such rows come to ELSE.
  std::string Unexpected(const KeyCondition& condition) const {
    std::string shown;
    for (const std::string& column : condition.columns) {
      const std::string text =
          "coalesce(" + dialect_.text_of + "(" + dialect_.name(column) + "), 'NULL')";
      shown = shown.empty() ? text : "concat(concat(" + shown + ", ', '), " + text + ")";
    }
    return "min(CASE WHEN " + Meets(condition) + " THEN NULL ELSE " + shown + " END)";
  }

  std::string Meets(const KeyCondition& condition) const {
    std::vector<std::string> any;
    const std::string& first = condition.columns.front();
    const std::string name = dialect_.name(first);
    for (const auto& [low, high] : condition.ranges) {
      const std::string from = name + " >= " + dialect_.key(first, low);
      any.push_back(high.empty()
                        ? from
                        : "(" + from + " AND " + name + " <= " + dialect_.key(first, high) + ")");
    }
    std::vector<std::string> listed;
    for (const auto& key : condition.keys) {
      if (key.size() == 1 && key[0]) {
        listed.push_back(dialect_.key(first, *key[0]));
      } else {
        any.push_back(Equals(condition.columns, key));
      }
    }
    if (!listed.empty()) any.push_back(name + " IN (" + Joined(listed, ", ") + ")");
    return "(" + Joined(any, " OR ") + ")";
  }

  std::string Equals(const std::vector<std::string>& columns,
                     const std::vector<std::optional<std::string>>& key) const {
    std::vector<std::string> all;
    for (std::size_t at = 0; at < key.size(); ++at) {
      const std::string name = dialect_.name(columns[at]);
      all.push_back(key[at] ? name + " = " + dialect_.key(columns[at], *key[at])
                            : name + " IS NULL");
    }
    return "(" + Joined(all, " AND ") + ")";
  }

  const TableQuestion& question_;
  const SqlDialect& dialect_;
};

}  // namespace

std::string TableStatement(const TableQuestion& question, const SqlDialect& dialect) {
  return Statement(question, dialect).Text();
}

std::string QuotedTable(const TableName& table, const SqlDialect& dialect) {
  return (table.schema.empty() ? "" : dialect.name(table.schema) + ".") + dialect.name(table.name);
}

bool IsPlainNumber(const std::string& text) {
  const auto is_digit = [](char letter) { return letter >= '0' && letter <= '9'; };
  const auto begin = text.begin() + (text.starts_with('-') ? 1 : 0);
  const auto rest = std::find_if_not(begin, text.end(), is_digit);
  return rest != begin &&
         (rest == text.end() || (*rest == '.' && std::all_of(rest + 1, text.end(), is_digit)));
}

}  // namespace vok::server
