// A database that does nothing and writes down, in order, what was asked of it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"

namespace vok::test {

struct DatabaseRecord {
  std::vector<std::string> lines;
  std::map<std::string, int32_t> tables;  ///< column counts
  std::string failing;                    ///< the line that fails

  void Add(const std::string& line) {
    lines.push_back(line);
    if (line == failing) throw Failure(failure_number::kUnspecified, "refused", "provider");
  }
};

inline std::string Shown(const Value& value) {
  if (value.IsNull()) return "NULL";
  if (const Date* date = value.As<Date>()) return "#" + Value(date->serial).ToText() + "#";
  return value.ToText();
}

template <typename Enum>
std::string Number(Enum value) {
  return std::to_string(static_cast<int32_t>(value));
}

class RecordingConnection : public Connection {
 public:
  explicit RecordingConnection(DatabaseRecord& record) : record_(record) {}
  std::string ConnectionString() const override { return {}; }
  void SetConnectionString(const std::string& text) override { record_.Add("text " + text); }
  void SetCursorLocation(CursorLocation location) override {
    record_.Add("connection cursor " + Number(location));
  }
  void SetCommandTimeout(int32_t seconds) override {
    record_.Add("timeout " + std::to_string(seconds));
  }
  void Open(const std::string& text, const std::string& user, const std::string& password,
            int32_t options) override {
    record_.Add("connect '" + text + "' '" + user + password + "' " + std::to_string(options));
  }
  void Close() override { record_.Add("disconnect"); }
  void BeginSave() override { record_.Add("begin"); }
  void BeginChange() override { record_.Add("begin change"); }
  void CommitSave() override { record_.Add("commit"); }
  void RollbackSave() noexcept override { record_.lines.emplace_back("rollback"); }

 private:
  DatabaseRecord& record_;
};

class RecordingRecordset : public Recordset {
 public:
  explicit RecordingRecordset(DatabaseRecord& record) : record_(record) {}
  void SetCursorLocation(CursorLocation location) override {
    record_.Add("cursor " + Number(location));
  }
  void SetActiveConnection(Connection* connection) override {
    record_.Add(connection != nullptr ? "attach" : "detach");
  }
  void SetCursorType(CursorType type) override { record_.Add("type " + Number(type)); }
  void SetLockType(LockType type) override { record_.Add("lock " + Number(type)); }
  void Open(const std::string& source, CursorType type, LockType lock, int32_t options) override {
    record_.Add("open '" + source + "' " + Number(type) + " " + Number(lock) + " " +
                std::to_string(options));
  }
  void Close() override { record_.Add("close"); }
  int32_t RecordCount() const override { return 0; }
  bool EndOfFile() const override { return true; }
  void MoveFirst() override {}
  void MoveNext() override {}
  int32_t FieldCount() const override { return 0; }
  std::string FieldName(int32_t) const override { return {}; }
  Value Field(int32_t) const override { return {}; }
  Value Field(const std::string&) const override { return {}; }
  void AddNew() override { record_.Add("add"); }
  void SetField(const std::string& name, const Value& value) override {
    record_.Add(name + "=" + Shown(value));
  }
  void Update() override { record_.Add("update"); }

 private:
  DatabaseRecord& record_;
};

class RecordingCommand : public Command {
 public:
  explicit RecordingCommand(DatabaseRecord& record) : record_(record) {}
  void SetActiveConnection(Connection&) override { record_.Add("command on connection"); }
  void SetCommandText(const std::string& text) override { record_.Add("command " + text); }
  void Execute(int32_t options) override { record_.Add("execute " + std::to_string(options)); }

 private:
  DatabaseRecord& record_;
};

class RecordingCatalog : public DatabaseCatalog {
 public:
  explicit RecordingCatalog(DatabaseRecord& record) : record_(record) {}
  void Create(const std::string& text) override { record_.Add("create " + text); }
  void Keep() override { record_.Add("keep"); }
  void SetActiveConnection(Connection&) override { record_.Add("catalog on connection"); }
  std::vector<std::string> TableNames() const override {
    std::vector<std::string> names;
    for (const auto& table : record_.tables) names.push_back(table.first);
    return names;
  }
  int32_t ColumnCount(const std::string& table) const override { return record_.tables.at(table); }
  void AppendTable(const TableDefinition& table) override {
    std::string line = "table " + table.name + ":";
    for (const ColumnDefinition& column : table.columns) line += " " + Text(column);
    record_.Add(line);
  }
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override {
    record_.Add("column " + table + " " + Text(column));
    ++record_.tables[table];
  }
  void AppendIndex(const std::string& table, const IndexDefinition& index) override {
    record_.Add("index " + table + "." + index.name + "(" + index.column + ")" +
                (index.primary_key ? " primary" : "") + (index.unique ? " unique" : "") +
                (index.clustered ? " clustered" : "") + (index.allow_nulls ? " nulls" : ""));
  }

 private:
  static std::string Text(const ColumnDefinition& column) {
    return column.name + "/" + Number(column.type) + "/" + std::to_string(column.size) +
           (column.nullable ? "/null" : "");
  }
  DatabaseRecord& record_;
};

class RecordingDatabase : public Database {
 public:
  std::unique_ptr<Connection> NewConnection() override {
    return std::make_unique<RecordingConnection>(record);
  }
  std::unique_ptr<Recordset> NewRecordset() override {
    return std::make_unique<RecordingRecordset>(record);
  }
  std::unique_ptr<Command> NewCommand() override {
    return std::make_unique<RecordingCommand>(record);
  }
  std::unique_ptr<DatabaseCatalog> NewCatalog() override {
    return std::make_unique<RecordingCatalog>(record);
  }
  DatabaseRecord record;
};

}  // namespace vok::test
