// Genuine Jet databases, for reading: copied into a store in memory, which answers as the file
// would.
//
// The file is read by a program of its own, `vokcubeq17-jet`: a damaged file may make the library
// that knows the format crash or never come back, and that must not end the host program.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "providers/database/jet/jet_answer.h"
#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/store.h"

namespace vok::jet {

/// What the settings want of a file.
struct Shape {
  std::vector<TableDefinition> tables;
  /// What stands for a NULL in a column: nobody can save the set again that a read of it would fail
  /// on.
  std::function<Value(const ColumnDefinition&)> nothing;
  /// Brings an older shape up to date, in memory: the file stays as it is.
  std::function<void(DatabaseStructure&)> complete;
};

class JetFiles {
 public:
  /// `readers` are the places, as native paths, where the program may lie. All outlive the stores.
  JetFiles(Files& files, const Locale& locale, std::vector<std::string> readers, Shape shape);

  /// What the file holds, as a store that refuses to be written. Every failure is -2147467259,
  /// names the file and says why it cannot be read: another version of the format, a password,
  /// encryption, damage, none of the wanted tables, a wanted column of a kind that is not read, or
  /// that the program is not there.
  std::shared_ptr<SqliteStore> Open(const std::string& path);

 private:
  JetAnswer Read(const std::string& native) const;

  Files& files_;
  const Locale& locale_;
  std::vector<std::string> readers_;
  Shape shape_;
  LockPatience patience_;
};

}  // namespace vok::jet
