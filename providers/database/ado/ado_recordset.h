// A record set of the platform's data objects.
#pragma once

#include "platform/database.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdoRecordset : public Recordset {
 public:
  AdoRecordset() : records_(Object::Create("ADODB.Recordset")) {}
  void SetCursorLocation(CursorLocation location) override;
  void SetActiveConnection(Connection* connection) override;
  void SetCursorType(CursorType type) override;
  void SetLockType(LockType type) override;
  void Open(const std::string& source, CursorType type, LockType lock, int32_t options) override;
  void Close() override;

  int32_t RecordCount() const override;
  bool EndOfFile() const override;
  void MoveFirst() override;
  void MoveNext() override;
  void SetFilter(const std::string& criterion) override;
  void Find(const std::string& criterion) override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

  void AddNew() override;
  void SetField(const std::string& name, const Value& value) override;
  void Update() override;

 private:
  Object FieldObject(const Value& key) const;

  Object records_;
  Object fields_;  ///< of the open record set
  Member item_{L"Item"};
  Member value_{L"Value"};
};

}  // namespace vok::windows
