#include "providers/database/ado/ado_connection.h"

#include "platform/failure.h"
#include "providers/database/ado/adox_structure.h"

namespace vok::windows {

AdoConnection::AdoConnection(const std::string& connection_string, int32_t timeout) {
  store_.ADOConnect(connection_string, static_cast<int16_t>(timeout));
}

std::unique_ptr<Rows> AdoConnection::Query(const std::string& statement) {
  store_.SQL = statement;
  return store_.GetRsReadOnly();
}

std::unique_ptr<WritableTable> AdoConnection::OpenTable(const std::string& name) {
  store_.SQL = name;
  return store_.GetRs();
}

void AdoConnection::Execute(const std::string& statement) {
  store_.SQL = statement;
  store_.RunCommand();
}

std::unique_ptr<DatabaseStructure> AdoConnection::OpenStructure() {
  return std::make_unique<AdoxStructure>(store_.OpenedConnection());
}

void AdoConnection::Begin(Purpose purpose) {
  if (purpose == Purpose::kSave) return;
  store_.OpenedConnection().Call(L"BeginTrans");
  in_transaction_ = true;
}

void AdoConnection::Commit() {
  if (!in_transaction_) return;
  store_.OpenedConnection().Call(L"CommitTrans");
  in_transaction_ = false;
}

void AdoConnection::Rollback() noexcept {
  if (!in_transaction_) return;
  in_transaction_ = false;
  try {
    store_.OpenedConnection().Call(L"RollbackTrans");
  } catch (const Failure&) {
    // The failure that ended the change is the one to tell; the provider takes the rest back.
  }
}

}  // namespace vok::windows
