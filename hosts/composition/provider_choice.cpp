#include "hosts/composition/provider_choice.h"

#include <string_view>

#include "platform/connection_text.h"
#include "platform/database.h"
#include "platform/failure.h"
#include "providers/database/ado/ado_database.h"
#include "system/automation/object.h"

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

constexpr char kProvider[] = "MSOLAP";
constexpr std::string_view kOurMark = "VokCube\x1A";

bool IsOurs(const Files& files, const std::string& path) {
  return ReadBeginning(files, path, kOurMark.size()) == kOurMark;
}

[[noreturn]] void ThrowNoCubeProvider(const std::string& file) {
  const std::string width = sizeof(void*) == 8 ? "64-bit" : "32-bit";
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: \"" + file +
                    "\" is not a cube file of this program, and this " + width +
                    " host process finds no " + width + " " + kProvider +
                    " provider. Install the OLE DB provider for OLAP of that width, or build the " +
                    "cube with \"vokcube cube build\".");
}

}  // namespace

Database& ChosenDatabase::For(const std::string& path) {
  const DatabaseKind kind = KindOfDatabase(files_, path);
  if (kind == DatabaseKind::kSqlite) return *portable_;
  if (!FindSettingsProvider().empty()) return platform_;
  if (kind == DatabaseKind::kJet) ThrowNoJet(path);
  return *portable_;
}

CubeProvider& CubeChoice::For(const std::string& connection_text) {
  const std::string source = cube_text::ParseConnectionText(connection_text).data_source;
  const bool is_file = files_.Exists(source);
  if (is_file && IsOurs(files_, source)) return *portable_;
  if (HasInProcessServer(kProvider)) return platform_;
  if (is_file) ThrowNoCubeProvider(source);
  return *portable_;
}

}  // namespace vok::windows
