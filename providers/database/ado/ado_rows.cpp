#include "providers/database/ado/ado_rows.h"

#include <utility>

namespace vok::windows {

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

}  // namespace vok::windows
