#include "platform/database.h"

#include <string_view>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr uint64_t kLongestMark = 32;
constexpr std::string_view kSqliteMark{"SQLite format 3\0", 16};
constexpr std::size_t kJetMarkAt = 4;
constexpr std::string_view kJetMark = "Standard Jet DB";
constexpr std::string_view kAceMark = "Standard ACE DB";

}  // namespace

std::unique_ptr<Recordset> Database::OpenRecordset(const std::string& path) {
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: nothing reads the record set " + path + " here.");
}

DatabaseKind KindOfDatabase(const Files& files, const std::string& path) {
  if (!files.Exists(path)) return DatabaseKind::kNone;
  const std::string text = ReadBeginning(files, path, kLongestMark);
  if (text.starts_with(kSqliteMark)) return DatabaseKind::kSqlite;
  const bool jet = text.find(kJetMark) == kJetMarkAt || text.find(kAceMark) == kJetMarkAt;
  return jet ? DatabaseKind::kJet : DatabaseKind::kOther;
}

}  // namespace vok
