// A record set of the platform's data objects.
#pragma once

#include <string>

#include "platform/database.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdoRows : public WritableTable {
 public:
  /// `records` is open.
  explicit AdoRows(Object records);
  /// Detaches the record set from its connection, which may go.
  void Detach();

  int32_t Count() const override;
  bool AtEnd() const override;
  void MoveFirst() override;
  void MoveNext() override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

  void Close() override;
  void Add(const Fields& fields) override;

 private:
  Object FieldObject(const Value& key) const;

  Object records_;
  Object fields_;
  Member item_{L"Item"};
  Member value_{L"Value"};
};

}  // namespace vok::windows
