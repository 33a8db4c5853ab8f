// The settings database through the platform's own data objects: ADO, and ADOX for its structure.
//
// All calls are late-bound, in the order that the platform's programs make them. Failures are the
// provider's, unchanged. An object is let go with its C++ object; the platform closes what was
// still open.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"

namespace vok::windows {

/// Needs a provider that `FindSettingsProvider` finds; asks for it at each call.
class AdoDatabase : public Database {
 public:
  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override;
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override;
  std::unique_ptr<NewDatabase> Create(const std::string& path) override;
};

}  // namespace vok::windows
