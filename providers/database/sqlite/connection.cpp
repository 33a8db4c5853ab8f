#include "providers/database/sqlite/connection.h"

#include "platform/database_file.h"
#include "platform/failure.h"
#include "providers/database/sqlite/connection_text.h"

namespace vok {

SqliteConnection::~SqliteConnection() {
  if (store_) store_->Close();
}

void SqliteConnection::SetCommandTimeout(int32_t seconds) {
  if (seconds < 0) {
    throw Failure(failure_number::kInvalidCall,
                  "The command time-out is in seconds and cannot be negative");
  }
  timeout_ = seconds;
  if (store_) store_->SetTimeout(seconds);
}

void SqliteConnection::Open(const std::string& connection_string, const std::string&,
                            const std::string&, int32_t) {
  if (store_) {
    throw Failure(failure_number::kInvalidCall,
                  "The connection to \"" + store_->file() + "\" is open already. Close it first.");
  }
  const auto text = ParseConnectionText(connection_string.empty() ? text_ : connection_string);
  store_ = OpenStore(text.data_source);
  text_ = text.ToText();
}

std::shared_ptr<SqliteStore> SqliteConnection::OpenStore(const std::string& path) const {
  const bool jet = open_jet_file_ && !files_.IsDirectory(path) &&
                   KindOfDatabase(files_, path) == DatabaseKind::kJet;
  return jet ? open_jet_file_(path) : SqliteStore::Open(files_, locale_, patience_, path, timeout_);
}

void SqliteConnection::Close() {
  Store()->Close();
  store_.reset();
}

void SqliteConnection::BeginSave() {
  const auto store = Store();
  if (store->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "A save has begun already; end that one first");
  }
  store->BeginWriting();
}

void SqliteConnection::CommitSave() {
  const auto store = Store();
  if (!store->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "No save has begun, or it was taken back");
  }
  store->Execute("COMMIT");
}

void SqliteConnection::RollbackSave() noexcept {
  if (store_) store_->RollBack();
}

std::shared_ptr<SqliteStore> SqliteConnection::Store() const {
  if (!store_) {
    throw Failure(failure_number::kObjectClosed,
                  "Operation is not allowed when the object is closed: the connection");
  }
  return store_;
}

std::shared_ptr<SqliteStore> StoreOf(Connection& connection) {
  const auto* own = dynamic_cast<SqliteConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kInvalidCall,
                  "The connection belongs to another provider than the settings database's");
  }
  return own->Store();
}

}  // namespace vok
