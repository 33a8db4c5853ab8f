#include "providers/database/sqlite/connection.h"

#include "platform/failure.h"
#include "providers/database/sqlite/rows.h"
#include "providers/database/sqlite/sqlite_rows.h"
#include "providers/database/sqlite/structure.h"

namespace vok {

std::unique_ptr<Rows> SqliteConnection::Query(const std::string& statement) {
  return std::make_unique<SqliteRows>(store_, statement);
}

std::unique_ptr<WritableTable> SqliteConnection::OpenTable(const std::string& name) {
  return std::make_unique<SqliteRows>(store_, name);
}

void SqliteConnection::Execute(const std::string& statement) { Run(*store_, statement); }

std::unique_ptr<DatabaseStructure> SqliteConnection::OpenStructure() {
  return std::make_unique<SqliteStructure>(store_);
}

void SqliteConnection::Begin(Purpose) {
  if (store_->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "A save has begun already; end that one first");
  }
  store_->BeginWriting();
}

void SqliteConnection::Commit() {
  if (!store_->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "No save has begun, or it was taken back");
  }
  store_->Execute("COMMIT");
}

}  // namespace vok
