#include "providers/database/jet/jet_answer.h"

#include <nlohmann/json.hpp>

namespace vok::jet {
namespace {

using Json = nlohmann::json;

ColumnDefinition ColumnOf(const Json& json) {
  ColumnDefinition column;
  column.name = json.at("name").get<std::string>();
  column.type = static_cast<ColumnType>(json.at("type").get<int32_t>());
  column.size = json.at("size").get<int32_t>();
  column.nullable = column.type != ColumnType::kBoolean;
  return column;
}

Value ValueOf(const Json& json, ColumnType type) {
  if (json.is_null()) return Null{};
  switch (type) {
    case ColumnType::kBoolean:
      return json.get<bool>();
    case ColumnType::kInteger:
      return json.get<int32_t>();
    case ColumnType::kDate:
      return Date{json.get<double>()};
    case ColumnType::kText:
      break;
  }
  return json.get<std::string>();
}

TableRows TableOf(const Json& json) {
  TableRows table;
  table.definition.name = json.at("name").get<std::string>();
  auto& columns = table.definition.columns;
  for (const Json& column : json.at("columns")) columns.push_back(ColumnOf(column));
  table.unread = json.at("unread").get<std::vector<std::string>>();
  for (const Json& row : json.at("rows")) {
    auto& values = table.rows.emplace_back();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      values.push_back(ValueOf(row.at(i), columns[i].type));
    }
  }
  return table;
}

}  // namespace

std::optional<JetAnswer> ParseAnswer(std::string_view json) {
  try {
    const Json parsed = Json::parse(json);
    JetAnswer answer;
    if (parsed.contains("failure")) {
      answer.failure = parsed["failure"].get<std::string>();
    } else {
      for (const Json& table : parsed.at("tables")) answer.tables.push_back(TableOf(table));
    }
    return answer;
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

}  // namespace vok::jet
