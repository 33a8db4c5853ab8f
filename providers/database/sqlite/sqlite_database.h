// The settings database in a SQLite file: behaves to its callers as Jet does, as far as they use
// it.
//
// The file's bytes are not a Jet database's; a genuine one is recognised, never written to, and
// read by the function that the database is made with. Columns keep the platform's types. Columns
// that are not nullable take NULL and the empty text all the same, as the settings need; the column
// of an index that allows no NULLs takes none.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "providers/database/sqlite/folder_lock.h"
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

class SqliteConnection : public Connection {
 public:
  explicit SqliteConnection(std::shared_ptr<SqliteStore> store) : store_(std::move(store)) {}
  /// Closes the store, also for tables and structures that are still there.
  ~SqliteConnection() override { store_->Close(); }

  std::unique_ptr<Rows> Query(const std::string& statement) override;
  std::unique_ptr<WritableTable> OpenTable(const std::string& name) override;
  void Execute(const std::string& statement) override;
  std::unique_ptr<DatabaseStructure> OpenStructure() override;

  /// One transaction, for either purpose, that keeps every other writer out from its beginning.
  void Begin(Purpose purpose) override;
  void Commit() override;
  void Rollback() noexcept override { store_->RollBack(); }

 private:
  std::shared_ptr<SqliteStore> store_;
};

/// The store that answers for a genuine Jet database; takes the system's path. Empty where there is
/// nothing to read those with.
using OpenJetFile = std::function<std::shared_ptr<SqliteStore>(const std::string& path)>;

/// `files` and `locale` outlive it and all that it makes.
class SqliteDatabase : public Database {
 public:
  SqliteDatabase(Files& files, const Locale& locale, OpenJetFile open_jet_file = {},
                 GoesOnWaiting goes_on = {})
      : files_(files),
        locale_(locale),
        open_jet_file_(std::move(open_jet_file)),
        patience_(std::move(goes_on)) {}

  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override;
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override;
  std::unique_ptr<NewDatabase> Create(const std::string& path) override;

 private:
  std::shared_ptr<SqliteStore> OpenStore(const std::string& path, int32_t timeout);

  Files& files_;
  const Locale& locale_;
  const OpenJetFile open_jet_file_;
  LockPatience patience_;
};

}  // namespace vok
