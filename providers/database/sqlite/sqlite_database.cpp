#include "providers/database/sqlite/sqlite_database.h"

#include "platform/failure.h"
#include "providers/database/sqlite/catalog.h"
#include "providers/database/sqlite/connection.h"
#include "providers/database/sqlite/recordset.h"
#include "providers/database/sqlite/rows.h"

namespace vok {
namespace {

class SqliteCommand : public Command {
 public:
  void SetActiveConnection(Connection& connection) override { store_ = StoreOf(connection); }
  void SetCommandText(const std::string& text) override { text_ = text; }
  void Execute(int32_t) override {
    if (!store_) {
      throw Failure(failure_number::kObjectClosed, "The command has no connection to run on");
    }
    Run(*store_, text_);
  }

 private:
  std::shared_ptr<SqliteStore> store_;
  std::string text_;
};

}  // namespace

std::unique_ptr<Connection> SqliteDatabase::NewConnection() {
  return std::make_unique<SqliteConnection>(files_, locale_, patience_, open_jet_file_);
}

std::unique_ptr<Recordset> SqliteDatabase::NewRecordset() {
  return std::make_unique<SqliteRecordset>(locale_);
}

std::unique_ptr<Command> SqliteDatabase::NewCommand() { return std::make_unique<SqliteCommand>(); }

std::unique_ptr<DatabaseCatalog> SqliteDatabase::NewCatalog() {
  return std::make_unique<SqliteCatalog>(files_, locale_, patience_);
}

}  // namespace vok
