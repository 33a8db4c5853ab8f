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
  /// Table Sets: SetName (key), Caption, Short (2 units), Count, From, Flag.
  void CreateFile() {
    const auto made = database_.Create(text_);
    DatabaseStructure& structure = made->Structure();
    structure.AppendTable({"Sets",
                           {{"SetName", ColumnType::kText, 255, false},
                            {"Caption", ColumnType::kText, 0, true},
                            {"Short", ColumnType::kText, 2, true},
                            {"Count", ColumnType::kInteger, 0, true},
                            {"From", ColumnType::kDate, 0, true},
                            {"Flag", ColumnType::kBoolean, 0, false}}});
    structure.AppendIndex("Sets", {"PrimaryKey", "SetName", true, true, false, false});
    made->Keep();
  }

  std::unique_ptr<Connection> Connect(int32_t timeout = 20) {
    return database_.Open(text_, timeout);
  }

  static void Add(Connection& connection, const std::string& name,
                  const std::string& caption = "") {
    connection.OpenTable("Sets")->Add({{"SetName", name}, {"Caption", caption}});
  }

  static std::vector<std::string> Names(Connection& connection, const std::string& source) {
    std::vector<std::string> names;
    const auto rows = connection.Query(source);
    for (; !rows->AtEnd(); rows->MoveNext()) names.push_back(rows->Field(0).ToText());
    return names;
  }

  PosixFiles files_;
  IcuLocale locale_{"en_GB"};
  SqliteDatabase database_{files_, locale_};
  TemporaryFolder folder_;
  std::string root_ = folder_.path();
  std::string path_ = root_ + "/CubToQel.mdb";
  std::string text_ = root_ + "\\CubToQel.mdb";  ///< as the system writes it
};

}  // namespace vok::test
