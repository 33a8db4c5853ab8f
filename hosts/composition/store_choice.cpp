#include "hosts/composition/store_choice.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/failure.h"
#include "providers/database/ado/settings_providers.h"
#include "providers/database/sqlite/connection_text.h"

namespace vok::windows {
namespace {

constexpr std::string_view kPortableMark{"SQLite format 3\0", 16};
constexpr std::size_t kJetMarkAt = 4;
constexpr std::string_view kJetMarks[] = {"Standard Jet DB", "Standard ACE DB"};

enum class FileKind { kNone, kPortable, kJet, kOther };

FileKind KindOf(const Files& files, const std::string& path) {
  if (!files.Exists(path)) return FileKind::kNone;
  constexpr uint64_t kLongestMark = 32;
  const std::string text = ReadBeginning(files, path, kLongestMark);
  if (text.starts_with(kPortableMark)) return FileKind::kPortable;
  const bool jet = std::any_of(std::begin(kJetMarks), std::end(kJetMarks),
                               [&](auto mark) { return text.find(mark) == kJetMarkAt; });
  return jet ? FileKind::kJet : FileKind::kOther;
}

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
  const FileKind kind = KindOf(files_, file);
  if (kind == FileKind::kPortable) return {portable_, connection_text};
  const std::string provider = FindSettingsProvider();
  if (!provider.empty()) return {platform_, WithProvider(connection_text, provider)};
  if (kind == FileKind::kJet) ThrowNoJet(file);
  return {portable_, connection_text};
}

}  // namespace vok::windows
