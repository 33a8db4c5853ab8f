// Which provider answers on Windows: the platform's own, or the portable one. Each file decides
// when it is opened or made.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/cube.h"
#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "providers/cube/adomd/adomd_provider.h"
#include "providers/database/ado/ado_database.h"

namespace vok::windows {

/// The settings database: through the platform's data objects where they have a provider, through
/// the portable store where they have none. A file that the portable store made is opened by it,
/// even where others are installed; any other file, or none, goes to the provider that
/// `FindSettingsProvider` finds. Without a provider new files are the portable store's; a genuine
/// Jet database is then failure 3706, whose text says which providers were looked for.
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

/// The cube: a file that begins as our own cube files do is the embedded engine's, even where
/// others are installed. Anything else, a server's address too, goes to MSOLAP where this process
/// can load it. Without it the portable providers answer: for a server's address and for a file
/// that is not there. A file of another program is then failure 3706, which says what was looked
/// for.
class CubeChoice : public CubeProvider {
 public:
  /// `files` and `locale` outlive the choice and all that it makes.
  CubeChoice(const Files& files, const Locale& locale, std::unique_ptr<CubeProvider> portable)
      : files_(files), portable_(std::move(portable)), platform_(locale) {}

  /// Failures: 3706 as above, those of a text that is not a connection text, and those of the
  /// provider that is chosen.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override {
    return For(text).Connect(text, stop);
  }

 private:
  CubeProvider& For(const std::string& connection_text);

  const Files& files_;
  std::unique_ptr<CubeProvider> portable_;
  AdomdCubeProvider platform_;
};

}  // namespace vok::windows
