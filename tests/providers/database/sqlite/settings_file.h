// A settings file of one table in a folder of its own, and short words to work on it.
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/database/sqlite/sqlite_database.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "tests/support/child_process.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace vok::test {

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFileTest() {
    path_ = root_ + "/CubToQel.mdb";
    text_ = "Provider=Microsoft.Jet.OLEDB.4.0;;Data Source=" + root_ + "\\CubToQel.mdb";
  }

  /// Table Sets: SetName (key), Caption, Short (2 units), Count, From, Flag.
  void CreateFile() {
    const auto catalog = database_.NewCatalog();
    catalog->Create(text_ + ";Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;");
    catalog->AppendTable({"Sets",
                          {{"SetName", ColumnType::kText, 255, false},
                           {"Caption", ColumnType::kText, 0, true},
                           {"Short", ColumnType::kText, 2, true},
                           {"Count", ColumnType::kInteger, 0, true},
                           {"From", ColumnType::kDate, 0, true},
                           {"Flag", ColumnType::kBoolean, 0, false}}});
    catalog->AppendIndex("Sets", {"PrimaryKey", "SetName", true, true, false, false});
    catalog->Keep();
  }

  std::unique_ptr<Connection> Connect(int32_t timeout = 20) {
    auto connection = database_.NewConnection();
    connection->SetConnectionString(text_);
    connection->SetCommandTimeout(timeout);
    connection->Open("", "", "", kUnspecifiedOptions);
    return connection;
  }

  std::unique_ptr<Recordset> Open(Connection& connection, const std::string& source,
                                  LockType lock = LockType::kReadOnly) {
    auto records = database_.NewRecordset();
    records->SetActiveConnection(&connection);
    records->SetLockType(lock);
    records->Open(source, CursorType::kUnspecified, LockType::kUnspecified, kUnspecifiedOptions);
    return records;
  }

  void Run(Connection& connection, const std::string& text) {
    const auto command = database_.NewCommand();
    command->SetActiveConnection(connection);
    command->SetCommandText(text);
    command->Execute(kUnspecifiedOptions);
  }

  using Fields = std::vector<std::pair<const char*, Value>>;

  static void AddRow(Recordset& records, const Fields& fields) {
    records.AddNew();
    for (const auto& [field, value] : fields) records.SetField(field, value);
    records.Update();
  }

  void Add(Connection& connection, const std::string& name, const std::string& caption = "") {
    AddRow(*Open(connection, "Sets", LockType::kOptimistic),
           {{"SetName", name}, {"Caption", caption}});
  }

  void AddMany(Connection& connection, int count) {
    const auto records = Open(connection, "Sets", LockType::kOptimistic);
    for (int row = 0; row < count; ++row) {
      AddRow(*records, {{"SetName", std::to_string(row)}, {"Caption", std::string(250, 'x')}});
    }
  }

  std::vector<std::string> Names(Connection& connection, const std::string& source) {
    std::vector<std::string> names;
    const auto records = Open(connection, source);
    for (; !records->EndOfFile(); records->MoveNext()) {
      names.push_back(records->Field(0).ToText());
    }
    return names;
  }

  PosixFiles files_;
  IcuLocale locale_{"en_GB"};
  SqliteDatabase database_{files_, locale_};
  TemporaryFolder folder_;
  std::string root_ = folder_.path();
  std::string path_;
  std::string text_;
};

}  // namespace vok::test
