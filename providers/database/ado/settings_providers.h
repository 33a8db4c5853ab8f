// Which provider of the platform can open a settings database in this host process.
#pragma once

#include <string>
#include <vector>

namespace vok::windows {

/// Names to look for, the first that is found is taken: Jet, where the settings come from, then the
/// database engine that followed it, the newest version first.
const std::vector<std::string>& SettingsProviders();

/// The provider to use; "" when this process can load none of them: a provider has the width (32 or
/// 64 bit) of the processes that it serves.
std::string FindSettingsProvider();

/// "32-bit" or "64-bit": of this process.
std::string ProcessWidth();

}  // namespace vok::windows
