#include "providers/database/ado/ado_recordset.h"

#include "providers/database/ado/ado_connection.h"

namespace vok::windows {

void AdoRecordset::SetCursorLocation(CursorLocation location) {
  records_.Put(L"CursorLocation", static_cast<int32_t>(location));
}

void AdoRecordset::SetActiveConnection(Connection* connection) {
  records_.PutObject(L"ActiveConnection",
                     connection == nullptr ? Object() : AdoConnection::ObjectOf(*connection));
}

void AdoRecordset::SetCursorType(CursorType type) {
  records_.Put(L"CursorType", static_cast<int32_t>(type));
}

void AdoRecordset::SetLockType(LockType type) {
  records_.Put(L"LockType", static_cast<int32_t>(type));
}

void AdoRecordset::Open(const std::string& source, CursorType type, LockType lock,
                        int32_t options) {
  records_.Call(L"Open", source, LeftOut(), static_cast<int32_t>(type), static_cast<int32_t>(lock),
                options);
  fields_ = records_.Child(L"Fields");
}

void AdoRecordset::Close() {
  fields_.Reset();
  records_.Call(L"Close");
}

int32_t AdoRecordset::RecordCount() const { return records_.Read(L"RecordCount").ToInt32(); }

bool AdoRecordset::EndOfFile() const { return records_.Read(L"EOF").ToBoolean(); }

void AdoRecordset::MoveFirst() { records_.Call(L"MoveFirst"); }

void AdoRecordset::MoveNext() { records_.Call(L"MoveNext"); }

void AdoRecordset::SetFilter(const std::string& criterion) { records_.Put(L"Filter", criterion); }

void AdoRecordset::Find(const std::string& criterion) { records_.Call(L"Find", criterion); }

int32_t AdoRecordset::FieldCount() const { return fields_.Read(L"Count").ToInt32(); }

Object AdoRecordset::FieldObject(const Value& key) const { return fields_.Child(item_, key); }

std::string AdoRecordset::FieldName(int32_t index) const {
  return FieldObject(index).Read(L"Name").ToText();
}

Value AdoRecordset::Field(int32_t index) const { return FieldObject(index).Read(value_); }

Value AdoRecordset::Field(const std::string& name) const { return FieldObject(name).Read(value_); }

void AdoRecordset::AddNew() { records_.Call(L"AddNew"); }

void AdoRecordset::SetField(const std::string& name, const Value& value) {
  FieldObject(name).Put(value_, value);
}

void AdoRecordset::Update() { records_.Call(L"Update"); }

}  // namespace vok::windows
