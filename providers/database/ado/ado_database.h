// The settings database through the platform's own data objects: ADO, and ADOX for its structure.
//
// All calls are late-bound, one for each of the port's, in the same words and order. Failures are
// the provider's, unchanged. An object is let go with its C++ object; the platform closes what was
// still open.
#pragma once

#include "platform/database.h"

namespace vok::windows {

class AdoDatabase : public Database {
 public:
  std::unique_ptr<Connection> NewConnection() override;
  std::unique_ptr<Recordset> NewRecordset() override;
  std::unique_ptr<Command> NewCommand() override;
  std::unique_ptr<DatabaseCatalog> NewCatalog() override;
};

}  // namespace vok::windows
