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
#include "providers/database/sqlite/lock_patience.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// The store that answers for a genuine Jet database; takes the system's path. Empty where there is
/// nothing to read those with.
using OpenJetFile = std::function<std::shared_ptr<SqliteStore>(const std::string& path)>;

/// `files` and `locale` outlive it and all that it makes.
class SqliteDatabase : public Database {
 public:
  SqliteDatabase(Files& files, const Locale& locale, OpenJetFile open_jet_file = {})
      : files_(files), locale_(locale), open_jet_file_(std::move(open_jet_file)) {}

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
