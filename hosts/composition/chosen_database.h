// The settings database on Windows: through the platform's data objects where they have a provider,
// through the portable store where they have none. Each file decides when it is opened or made.
//
// A file that the portable store made is opened by it, even where others are installed; any other
// file, or none, goes to the provider that `FindSettingsProvider` finds. Without a provider new
// files are the portable store's; a genuine Jet database is then failure 3706, whose text says
// which providers were looked for.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/database.h"
#include "platform/files.h"
#include "providers/database/ado/ado_database.h"

namespace vok::windows {

class ChosenDatabase : public Database {
 public:
  /// `files` outlives this, and this all that it makes.
  ChosenDatabase(const Files& files, std::unique_ptr<Database> portable)
      : files_(files), portable_(std::move(portable)) {}

  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override {
    return For(path).Open(path, timeout);
  }
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override {
    return For(path).OpenStructure(path);
  }
  std::unique_ptr<NewDatabase> Create(const std::string& path) override {
    return For(path).Create(path);
  }
  /// Record sets that stand in files of their own are the portable reader's.
  std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
    return portable_->OpenRecordset(path);
  }

 private:
  Database& For(const std::string& path);

  const Files& files_;
  std::unique_ptr<Database> portable_;
  AdoDatabase platform_;
};

}  // namespace vok::windows
