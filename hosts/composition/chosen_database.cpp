#include "hosts/composition/chosen_database.h"

#include "platform/database_file.h"
#include "platform/failure.h"
#include "providers/database/ado/settings_providers.h"

namespace vok::windows {
namespace {

[[noreturn]] void ThrowNoJet(const std::string& file) {
  std::string names;
  for (const std::string& name : SettingsProviders()) names += (names.empty() ? "" : ", ") + name;
  throw Failure(
      failure_number::kProviderNotFound,
      "Provider cannot be found: \"" + file + "\" is a Jet database, and this " + ProcessWidth() +
          " host process finds no " + ProcessWidth() + " provider for it (" + names +
          "). Install the Access Database Engine of " +
          "that width, or use a host program of the width that is installed. Without " +
          "either, take its sets over on Linux: there vokcube settings export sets.json " +
          "--from FILE, here vokcube settings import sets.json into another folder.");
}

}  // namespace

Database& ChosenDatabase::For(const std::string& path) {
  const DatabaseKind kind = KindOfDatabase(files_, path);
  if (kind == DatabaseKind::kSqlite) return *portable_;
  if (!FindSettingsProvider().empty()) return platform_;
  if (kind == DatabaseKind::kJet) ThrowNoJet(path);
  return *portable_;
}

}  // namespace vok::windows
