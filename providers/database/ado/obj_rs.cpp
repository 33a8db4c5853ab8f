#include "providers/database/ado/obj_rs.h"

#include <utility>

#include "platform/failure.h"

namespace vok::windows {
namespace {

constexpr int32_t kUseClient = 3;  // adUseClient
constexpr int32_t kDynamic = 2;    // adOpenDynamic
constexpr int32_t kStatic = 3;     // adOpenStatic
constexpr int32_t kLockReadOnly = 1;
constexpr int32_t kLockOptimistic = 3;
constexpr int32_t kAsSet = -1;  // cursor type and lock that were set; no options

}  // namespace

AdoRows::AdoRows(Object records)
    : records_(std::move(records)), fields_(records_.Child(L"Fields")) {}

void AdoRows::Detach() { records_.PutObject(L"ActiveConnection", Object()); }

int32_t AdoRows::Count() const { return records_.Read(L"RecordCount").ToInt32(); }

bool AdoRows::AtEnd() const { return records_.Read(L"EOF").ToBoolean(); }

void AdoRows::MoveFirst() { records_.Call(L"MoveFirst"); }

void AdoRows::MoveNext() { records_.Call(L"MoveNext"); }

int32_t AdoRows::FieldCount() const { return fields_.Read(L"Count").ToInt32(); }

Object AdoRows::FieldObject(const Value& key) const { return fields_.Child(item_, key); }

std::string AdoRows::FieldName(int32_t index) const {
  return FieldObject(index).Read(L"Name").ToText();
}

Value AdoRows::Field(int32_t index) const { return FieldObject(index).Read(value_); }

Value AdoRows::Field(const std::string& name) const { return FieldObject(name).Read(value_); }

void AdoRows::Close() {
  fields_.Reset();
  records_.Call(L"Close");
}

void AdoRows::Add(const Fields& fields) {
  records_.Call(L"AddNew");
  for (const auto& [name, value] : fields) FieldObject(name).Put(value_, value);
  records_.Call(L"Update");
}

void AdoRows::Abandon() {
  records_.Call(L"CancelUpdate");
  records_.Call(L"Close");
}

void AdoRows::Reopen() {
  records_.Call(L"Open");
  fields_ = records_.Child(L"Fields");
}

std::unique_ptr<AdoRows> objRs::GetRs() const { return OpenRecordset(kDynamic, kLockOptimistic); }

void objRs::ADOConnect(const std::string& connection_string, int16_t timeout) {
  const Object connection = Object::Create("ADODB.Connection");
  connection.Put(L"ConnectionString", connection_string);
  connection.Put(L"CursorLocation", kUseClient);
  connection.Put(L"CommandTimeout", int32_t{timeout});
  connection.Call(L"Open", "", "", "", kAsSet);
  connection_ = connection;
}

std::unique_ptr<AdoRows> objRs::GetRsReadOnly() const {
  auto rows = OpenRecordset(kStatic, kLockReadOnly);
  rows->Detach();
  return rows;
}

void objRs::RunCommand() const {
  const Object& connection = OpenedConnection();
  const Object command = Object::Create("ADODB.Command");
  command.PutObject(L"ActiveConnection", connection);
  command.Put(L"CommandText", SQL);
  command.Call(L"Execute", LeftOut(), LeftOut(), kAsSet);
}

AdoRows& objRs::GetrsOlap(std::unique_ptr<AdoRows>& record_set) const {
  record_set = GetRs();
  return *record_set;
}

const Object& objRs::OpenedConnection() const {
  if (!connection_) throw Failure(failure_number::kNoConnection, "No valid Connection", "GetRs");
  return connection_;
}

std::unique_ptr<AdoRows> objRs::OpenRecordset(int32_t cursor_type, int32_t lock_type) const {
  const Object& connection = OpenedConnection();
  Object records = Object::Create("ADODB.Recordset");
  records.Put(L"CursorLocation", kUseClient);
  records.PutObject(L"ActiveConnection", connection);
  records.Put(L"CursorType", cursor_type);
  records.Put(L"LockType", lock_type);
  records.Call(L"Open", SQL, LeftOut(), kAsSet, kAsSet, kAsSet);
  return std::make_unique<AdoRows>(std::move(records));
}

}  // namespace vok::windows
