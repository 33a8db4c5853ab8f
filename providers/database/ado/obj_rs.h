// The one way to the rows of a settings database through the platform's data objects: a connection,
// a statement, and record sets of it.
//
// An `objRs` owns its connection; record sets belong to the caller. Those of `GetRs` and
// `GetrsOlap` need the connection, those of `GetRsReadOnly` outlive it. Without a connection all
// that need one fail with -2147221406 "No valid Connection". Failures of the data provider pass
// through unchanged.
#pragma once

#include <cstdint>
#include <memory>
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
  /// Ends an addition that failed, and lets go of the table.
  void Abandon();
  /// After `Abandon`: as it was opened.
  void Reopen();

 private:
  Object FieldObject(const Value& key) const;

  Object records_;
  Object fields_;
  Member item_{L"Item"};
  Member value_{L"Value"};
};

class objRs {
 public:
  /// The statement, or bare table name, to open or execute next.
  std::string SQL;

  /// Opens `SQL` as an updatable record set.
  std::unique_ptr<AdoRows> GetRs() const;
  /// Time-out in seconds.
  void ADOConnect(const std::string& connection_string, int16_t timeout);
  /// Opens `SQL` as a counted snapshot, detached from the connection.
  std::unique_ptr<AdoRows> GetRsReadOnly() const;
  /// Executes `SQL`.
  void RunCommand() const;
  /// As `GetRs`; the new record set is kept in the argument. Nothing calls it: it belongs to the
  /// class as other programs know it.
  AdoRows& GetrsOlap(std::unique_ptr<AdoRows>& record_set) const;

  const Object& OpenedConnection() const;

 private:
  std::unique_ptr<AdoRows> OpenRecordset(int32_t cursor_type, int32_t lock_type) const;

  Object connection_;
};

}  // namespace vok::windows
