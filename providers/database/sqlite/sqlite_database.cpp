#include "providers/database/sqlite/sqlite_database.h"

#include "platform/database_file.h"
#include "providers/database/sqlite/connection.h"
#include "providers/database/sqlite/structure.h"

namespace vok {

std::unique_ptr<Connection> SqliteDatabase::Open(const std::string& path, int32_t timeout) {
  return std::make_unique<SqliteConnection>(OpenStore(path, timeout));
}

std::unique_ptr<DatabaseStructure> SqliteDatabase::OpenStructure(const std::string& path) {
  return std::make_unique<SqliteStructure>(OpenStore(path, kDefaultTimeout));
}

std::unique_ptr<NewDatabase> SqliteDatabase::Create(const std::string& path) {
  return std::make_unique<SqliteNewDatabase>(files_, locale_, patience_, path);
}

std::shared_ptr<SqliteStore> SqliteDatabase::OpenStore(const std::string& path, int32_t timeout) {
  const bool jet = open_jet_file_ && !files_.IsDirectory(path) &&
                   KindOfDatabase(files_, path) == DatabaseKind::kJet;
  return jet ? open_jet_file_(path) : SqliteStore::Open(files_, locale_, patience_, path, timeout);
}

}  // namespace vok
