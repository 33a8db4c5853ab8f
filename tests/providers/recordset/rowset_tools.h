// Record sets as texts, and reading ones that lie in memory.
#pragma once

#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "providers/recordset/rowset.h"

namespace vok::recordset::test {

inline std::string Shown(const Value& value) {
  if (value.IsNull()) return "-";
  if (value.Is<CellError>()) return "!";
  if (const Date* date = value.As<Date>()) return "#" + Value(date->serial).ToText();
  if (const bool* flag = value.As<bool>()) return *flag ? "yes" : "no";
  return value.ToText();
}

/// "sId,lId,text;1,2,x;…": the columns, then the rows; "-" is NULL, "!" cannot be shown.
inline std::string Shown(const Rowset& rowset) {
  std::string shown;
  for (const Column& column : rowset.columns) shown += column.name + ",";
  for (const Row& row : rowset.rows) {
    shown.back() = ';';
    for (const Value& value : row) shown += Shown(value) + ",";
  }
  shown.pop_back();
  return shown;
}

inline Rowset Read(std::string_view bytes, const CodePage& code_page = {}) {
  return ReadRowset(std::as_bytes(std::span(bytes.data(), bytes.size())), "Lang.rs", code_page);
}

/// A file of those that are also replayed with damage.
inline std::string Recorded(const std::string& name) {
  std::ifstream stream(VOK_RECORDSETS "/" + name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

/// What the bytes hold, or "!" and why they are refused. A value that cannot be shown is "!".
inline std::string Outcome(std::string_view bytes, const CodePage& code_page = {}) {
  try {
    return Shown(Read(bytes, code_page));
  } catch (const Failure& failure) {
    return (failure.number() == failure_number::kUnspecified ? "!" : "wrong number ") +
           failure.description();
  }
}

}  // namespace vok::recordset::test
