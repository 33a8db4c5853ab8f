#include "hosts/composition/store_choice.h"

#include "platform/database_file.h"
#include "platform/failure.h"
#include "providers/database/ado/settings_providers.h"
#include "providers/database/sqlite/connection_text.h"

namespace vok::windows {
namespace {

[[noreturn]] void ThrowNoJet(const std::string& file) {
  std::string names;
  for (const std::string& name : SettingsProviders()) names += (names.empty() ? "" : ", ") + name;
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: \"" + file + "\" is a Jet database, and this " +
                    ProcessWidth() + " host process finds no " + ProcessWidth() +
                    " provider for it (" + names + "). Install the Access Database Engine of " +
                    "that width, or use a host program of the width that is installed.");
}

std::string WithProvider(std::string text, const std::string& provider) {
  const std::size_t at = text.find(kJetProvider);
  return at == std::string::npos ? text : text.replace(at, kJetProvider.size(), provider);
}

}  // namespace

ChosenStore StoreChoice::For(const std::string& connection_text) const {
  const std::string file = ParseConnectionText(connection_text).data_source;
  const DatabaseKind kind = KindOfDatabase(files_, file);
  if (kind == DatabaseKind::kSqlite) return {portable_, connection_text};
  const std::string provider = FindSettingsProvider();
  if (!provider.empty()) return {platform_, WithProvider(connection_text, provider)};
  if (kind == DatabaseKind::kJet) ThrowNoJet(file);
  return {portable_, connection_text};
}

}  // namespace vok::windows
