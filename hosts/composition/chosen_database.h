// The settings database on Windows: through the platform's data objects where they have a provider,
// through the portable store where they have none.
//
// Each connection decides when it is opened (store_choice.h). Record sets, commands and catalogs go
// the way of their connection.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "hosts/composition/store_choice.h"
#include "platform/database.h"
#include "providers/database/ado/ado_database.h"

namespace vok::windows {

class ChosenDatabase : public Database {
 public:
  /// `files` outlives this, and this all that it makes.
  ChosenDatabase(const Files& files, std::unique_ptr<Database> portable)
      : portable_(std::move(portable)), choice_(files, *portable_, platform_) {}

  std::unique_ptr<Connection> NewConnection() override;
  std::unique_ptr<Recordset> NewRecordset() override;
  std::unique_ptr<Command> NewCommand() override;
  std::unique_ptr<DatabaseCatalog> NewCatalog() override;
  /// Record sets that stand in files of their own are the portable reader's.
  std::unique_ptr<Recordset> OpenRecordset(const std::string& source,
                                           const std::string& connection_text) override {
    return portable_->OpenRecordset(source, connection_text);
  }

 private:
  std::unique_ptr<Database> portable_;
  AdoDatabase platform_;
  StoreChoice choice_;
};

}  // namespace vok::windows
