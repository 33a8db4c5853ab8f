// The rows of a statement or a table: a snapshot in memory, by the order of their insertion, and
// the way to insert more.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "providers/database/sqlite/rows.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// They stay readable when the store is closed; a row that is added then fails with 3704.
class SqliteRows : public WritableTable {
 public:
  /// Failures: -2147217900 a statement that is not understood, -2147217865 no such table,
  /// -2147217904 no such column.
  SqliteRows(std::shared_ptr<SqliteStore> store, const std::string& source);

  int32_t Count() const override { return static_cast<int32_t>(selection_.rows.size()); }
  bool AtEnd() const override { return position_ >= selection_.rows.size(); }
  void MoveFirst() override;
  void MoveNext() override;

  int32_t FieldCount() const override;
  std::string FieldName(int32_t index) const override;
  Value Field(int32_t index) const override;
  Value Field(const std::string& name) const override;

  void Add(const Fields& fields) override;

 private:
  void CheckNotAtEnd() const;
  std::size_t IndexOf(const std::string& name) const;
  std::size_t Checked(int32_t index) const;
  Value FieldAt(std::size_t place) const;

  std::shared_ptr<SqliteStore> store_;
  Selection selection_;
  std::size_t position_ = 0;
};

}  // namespace vok
