// A database of rows that a test lays out, to be read only. It writes down which files were opened
// and made.
#pragma once

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"

namespace vok::test {

/// A row by its fields; a field that is not there reads as empty.
using TableRow = std::map<std::string, Value>;
using Tables = std::map<std::string, std::vector<TableRow>>;

/// Of a bare table name, and "… FROM table" with an optional "… like 'name'" that matches the set's
/// exact name.
class LaidOutRows : public Rows {
 public:
  LaidOutRows(const Tables& tables, const std::string& source) {
    const auto from = source.find(" FROM ");
    const std::string rest = from == std::string::npos ? source : source.substr(from + 6);
    const auto table = tables.find(rest.substr(0, rest.find(' ')));
    if (table == tables.end()) throw Failure(failure_number::kNoTable, "No table: " + source);
    const auto like = rest.find(" like '");
    for (const TableRow& row : table->second) {
      const std::string name = row.at("SetName").ToText();
      if (like == std::string::npos || rest.substr(like) == " like '" + name + "'") {
        rows_.push_back(row);
      }
    }
  }
  int32_t Count() const override { return static_cast<int32_t>(rows_.size()); }
  bool AtEnd() const override { return row_ >= rows_.size(); }
  void MoveFirst() override { row_ = 0; }
  void MoveNext() override { ++row_; }
  int32_t FieldCount() const override { throw std::logic_error("fields are by name"); }
  std::string FieldName(int32_t) const override { throw std::logic_error("fields are by name"); }
  Value Field(int32_t) const override { return Field("SetName"); }
  Value Field(const std::string& name) const override {
    const auto field = rows_.at(row_).find(name);
    return field == rows_.at(row_).end() ? Value() : field->second;
  }

 private:
  std::vector<TableRow> rows_;
  std::size_t row_ = 0;
};

/// Is up to date; what is made has no effect.
struct LaidOutStructure : DatabaseStructure {
  std::vector<std::string> TableNames() const override { return {}; }
  int32_t ColumnCount(const std::string&) const override { return 0; }
  void AppendTable(const TableDefinition&) override {}
  void AppendColumn(const std::string&, const ColumnDefinition&) override {}
  void AppendIndex(const std::string&, const IndexDefinition&) override {}
};

struct LaidOutNewDatabase : NewDatabase {
  DatabaseStructure& Structure() override { return structure; }
  void Keep() override {}
  LaidOutStructure structure;
};

class LaidOutConnection : public Connection {
 public:
  explicit LaidOutConnection(const Tables& tables) : tables_(tables) {}
  std::unique_ptr<Rows> Query(const std::string& statement) override {
    return std::make_unique<LaidOutRows>(tables_, statement);
  }
  std::unique_ptr<DatabaseStructure> OpenStructure() override {
    return std::make_unique<LaidOutStructure>();
  }
  std::unique_ptr<WritableTable> OpenTable(const std::string&) override { Refuse(); }
  void Execute(const std::string&) override { Refuse(); }
  void Begin(Purpose) override { Refuse(); }
  void Commit() override { Refuse(); }
  void Rollback() noexcept override {}

 private:
  [[noreturn]] static void Refuse() { throw std::logic_error("rows are read only"); }
  const Tables& tables_;
};

class TableDatabase : public Database {
 public:
  std::unique_ptr<Connection> Open(const std::string& path, int32_t) override {
    calls.push_back("open " + path);
    return std::make_unique<LaidOutConnection>(tables);
  }
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override {
    calls.push_back("open structure " + path);
    return std::make_unique<LaidOutStructure>();
  }
  std::unique_ptr<NewDatabase> Create(const std::string& path) override {
    calls.push_back("create " + path);
    return std::make_unique<LaidOutNewDatabase>();
  }
  Tables tables{{"DataSourceInfo", {}}, {"MoneySetsMeasures", {}}, {"Periods", {}}};
  std::vector<std::string> calls;
};

}  // namespace vok::test
