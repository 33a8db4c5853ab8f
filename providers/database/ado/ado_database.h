// The settings database through the platform's own data objects: ADO, and ADOX for its structure.
//
// All calls are late-bound, in the order that the platform's programs make them. Failures are the
// provider's, unchanged. An object is let go with its C++ object; the platform closes what was
// still open.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"

namespace vok::windows {

/// Names to look for, the first that is found is taken: Jet, where the settings come from, then the
/// database engine that followed it, the newest version first.
const std::vector<std::string>& SettingsProviders();

/// The provider to use; "" when this process can load none of them: a provider has the width (32 or
/// 64 bit) of the processes that it serves.
std::string FindSettingsProvider();

/// "32-bit" or "64-bit": of this process.
std::string ProcessWidth();

/// Needs a provider that `FindSettingsProvider` finds; asks for it at each call.
class AdoDatabase : public Database {
 public:
  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override;
  std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) override;
  std::unique_ptr<NewDatabase> Create(const std::string& path) override;
};

}  // namespace vok::windows
