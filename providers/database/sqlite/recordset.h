// A record set: a snapshot of rows in memory, by the order of their insertion, and the way to
// insert more.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "providers/database/sqlite/schema.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// Whatever cursor is asked for, the rows are those of the moment of opening. They stay readable
/// when the set is detached, and when its connection is closed. `locale` outlives it.
class SqliteRecordset : public Recordset {
 public:
  explicit SqliteRecordset(const Locale& locale) : locale_(locale) {}

  void SetCursorLocation(CursorLocation) override {}
  void SetActiveConnection(Connection* connection) override;
  void SetCursorType(CursorType) override {}
  void SetLockType(LockType type) override { lock_ = type; }
  /// Failures: -2147217900 a statement that is not understood, -2147217865 no such table,
  /// -2147217904 no such column, 3704 no connection.
  void Open(const std::string& source, CursorType type, LockType lock, int32_t options) override;
  void Close() override;

  int32_t RecordCount() const override;
  bool EndOfFile() const override;
  void MoveFirst() override;
  void MoveNext() override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

  /// Fails with 3251 when the set is read-only. A row that was begun before is stored first.
  void AddNew() override;
  void SetField(const std::string& name, const Value& value) override;
  void Update() override;

 private:
  using Row = std::vector<Value>;

  void CheckOpen() const;
  std::size_t IndexOf(const std::string& name) const;
  std::size_t Checked(int32_t index) const;
  const Row& CurrentRow() const;

  const Locale& locale_;
  std::shared_ptr<SqliteStore> store_;  ///< none while detached
  LockType lock_ = LockType::kReadOnly;
  bool open_ = false;
  TableDefinition table_;  ///< its columns are those of the set
  std::vector<Row> rows_;
  std::size_t position_ = 0;
  std::optional<Row> new_row_;
};

}  // namespace vok
