#include "settings/obj_rs.h"

#include "platform/failure.h"

namespace vok {

std::unique_ptr<Recordset> objRs::GetRs() {
  return OpenRecordset(CursorType::kDynamic, LockType::kOptimistic);
}

void objRs::ADOConnect(const std::string& connection_string, int16_t timeout) {
  auto connection = database_.NewConnection();
  connection->SetConnectionString(connection_string);
  connection->SetCursorLocation(CursorLocation::kClient);
  connection->SetCommandTimeout(timeout);
  connection->Open("", "", "", kUnspecifiedOptions);
  connection_ = std::move(connection);
}

std::unique_ptr<Recordset> objRs::GetRsReadOnly() {
  auto record_set = OpenRecordset(CursorType::kStatic, LockType::kReadOnly);
  record_set->SetActiveConnection(nullptr);
  return record_set;
}

void objRs::RunCommand() {
  const auto command = database_.NewCommand();
  command->SetActiveConnection(OpenedConnection());
  command->SetCommandText(SQL);
  command->Execute(kUnspecifiedOptions);
}

Recordset& objRs::GetrsOlap(std::unique_ptr<Recordset>& record_set) {
  record_set = GetRs();
  return *record_set;
}

Connection& objRs::OpenedConnection() const {
  if (!connection_) throw Failure(failure_number::kNoConnection, "No valid Connection", "GetRs");
  return *connection_;
}

std::unique_ptr<Recordset> objRs::OpenRecordset(CursorType cursor, LockType lock) const {
  Connection& connection = OpenedConnection();
  auto record_set = database_.NewRecordset();
  record_set->SetCursorLocation(CursorLocation::kClient);
  record_set->SetActiveConnection(&connection);
  record_set->SetCursorType(cursor);
  record_set->SetLockType(lock);
  record_set->Open(SQL, CursorType::kUnspecified, LockType::kUnspecified, kUnspecifiedOptions);
  return record_set;
}

}  // namespace vok
