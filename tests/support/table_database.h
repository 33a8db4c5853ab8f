// A database of rows that a test lays out, to be read only. Everything else is written down as
// `RecordingDatabase` does.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "tests/support/recording_database.h"

namespace vok::test {

/// A row by its fields; a field that is not there reads as empty.
using TableRow = std::map<std::string, Value>;
using Tables = std::map<std::string, std::vector<TableRow>>;

/// Understands a bare table name, and "… FROM table" with an optional "… like 'name'" that matches
/// the set's exact name.
class TableRecordset : public RecordingRecordset {
 public:
  TableRecordset(DatabaseRecord& record, const Tables& tables)
      : RecordingRecordset(record), tables_(tables) {}
  void Open(const std::string& source, CursorType, LockType, int32_t) override {
    const auto from = source.find(" FROM ");
    const std::string rest = from == std::string::npos ? source : source.substr(from + 6);
    const auto table = tables_.find(rest.substr(0, rest.find(' ')));
    if (table == tables_.end()) throw Failure(failure_number::kNoTable, "No table: " + source);
    const auto like = rest.find(" like '");
    for (const TableRow& row : table->second) {
      const std::string name = row.at("SetName").ToText();
      if (like == std::string::npos || rest.substr(like) == " like '" + name + "'") {
        rows_.push_back(row);
      }
    }
  }
  int32_t RecordCount() const override { return static_cast<int32_t>(rows_.size()); }
  bool EndOfFile() const override { return row_ >= rows_.size(); }
  void MoveFirst() override { row_ = 0; }
  void MoveNext() override { ++row_; }
  Value Field(int32_t) const override { return Field("SetName"); }
  Value Field(const std::string& name) const override {
    const auto field = rows_.at(row_).find(name);
    return field == rows_.at(row_).end() ? Value() : field->second;
  }

 private:
  const Tables& tables_;
  std::vector<TableRow> rows_;
  std::size_t row_ = 0;
};

class TableDatabase : public RecordingDatabase {
 public:
  std::unique_ptr<Recordset> NewRecordset() override {
    return std::make_unique<TableRecordset>(record, tables);
  }
  Tables tables{{"DataSourceInfo", {}}, {"MoneySetsMeasures", {}}, {"Periods", {}}};
};

}  // namespace vok::test
