#include "cli/output_file.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <span>
#include <system_error>

#include "cli/piped_facts.h"
#include "cli/print.h"
#include "platform/database.h"
#include "platform/failure.h"
#include "platform/whole_path.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::cli {
namespace {

constexpr uint64_t kBeginning = 4096;
constexpr int kMostLinks = 40;  // as many as the kernel follows

std::string_view WithoutMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  return text;
}

std::string_view WithoutBlanks(std::string_view text) {
  return text.substr(std::min(text.size(), text.find_first_not_of(" \t\r\n")));
}

bool BeginsCube(std::string_view text) {
  return text.starts_with(std::string_view(olap::kFileMagic.data(), olap::kFileMagic.size()));
}

/// "entries.csv, line 4: …", "table fact, row 4: …".
bool BeginsBadRows(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  for (const std::string_view word : {", line ", ", row "}) {
    const auto found = line.find(word);
    if (found == std::string_view::npos) continue;
    const std::string_view number = line.substr(found + word.size());
    const auto end = number.find_first_not_of("0123456789");
    if (end != 0 && end != std::string_view::npos && number.substr(end).starts_with(": ")) {
      return true;
    }
  }
  return false;
}

/// "2024-01-31T16:32:10 0 …".
bool IsLogLine(std::string_view line) {
  constexpr std::size_t kDay = 10, kMoment = 19;
  return line.size() > kMoment && ParseIsoDate(line.substr(0, kDay)) && line[kDay] == 'T' &&
         line[kMoment] == ' ';
}

/// The second line counts too: somebody may have cut the log short within its first.
bool BeginsRunLog(std::string_view text) {
  const auto end = text.find('\n');
  return IsLogLine(text) || (end != std::string_view::npos && IsLogLine(text.substr(end + 1)));
}

bool BeginsSettings(std::string_view text) {
  text = WithoutBlanks(WithoutMark(text));
  if (!text.starts_with('{')) return false;
  text = WithoutBlanks(text.substr(1));
  return text.starts_with("\"dataSources\"") || text.starts_with("\"periods\"") ||
         text.starts_with('}');
}

/// "number,1 English,…", with quotation marks or without.
bool BeginsTexts(std::string_view text) {
  std::string heading(WithoutMark(text).substr(0, text.find('\n')));
  std::erase(heading, '"');
  return heading.starts_with("number,1") || heading.starts_with("number,2") ||
         heading.starts_with("number,3");
}

bool BeginsLanguageTable(std::string_view text) {
  return text.starts_with("\x01\x07TG!") || WithoutBlanks(WithoutMark(text)).starts_with("<xml");
}

/// Also where another program adds to the file meanwhile. "" for a log that may be written alone.
std::string BeginningOf(const Files& files, const std::string& path, const OutputKind& kind) try {
  const auto file = files.Open(path);
  std::string text(static_cast<std::size_t>(std::min(kBeginning, file->Size())), '\0');
  file->Read(0, std::as_writable_bytes(std::span(text)));
  return text;
} catch (const Failure& failure) {
  if (!kind.is_added_to || failure.number() != failure_number::kPermissionDenied) throw;
  return {};
}

bool IsDatabase(const Files& files, const std::string& path) {
  const DatabaseKind kind = KindOfDatabase(files, path);
  return kind == DatabaseKind::kJet || kind == DatabaseKind::kSqlite;
}

/// A name for what the caller has opened, which may be any file: it is not there by mistake.
bool IsOpenAlready(std::string_view path) {
  return path.starts_with("/dev/std") || path.starts_with("/dev/fd/") ||
         path.starts_with("/proc/self/fd/");
}

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw Failure(failure_number::kFileExists, "Cannot write \"" + path + "\": " + why);
}

}  // namespace

const OutputKind kCubeFile{"a cube", BeginsCube};
const OutputKind kBadRowsList{"a list of bad rows", BeginsBadRows};
const OutputKind kRunLog{.name = "a log of runs", .is_known = BeginsRunLog, .is_added_to = true};
const OutputKind kSettingsDocument{
    "a settings document", BeginsSettings,
    "Give another name, or move it away first; a database to export is named after --from."};
const OutputKind kTextsOfWindows{"a CSV file of texts", BeginsTexts};
const OutputKind kLanguageTable{"a language table", BeginsLanguageTable};

std::string FileIdentity(const Host& host, const std::string& path) {
  std::error_code ignored;
  std::filesystem::path file = PathOfUtf8(host.files.NativePath(path));
  for (int hop = 0; hop < kMostLinks; ++hop) {
    const auto folder = std::filesystem::absolute(file, ignored).parent_path();
    const auto real = std::filesystem::weakly_canonical(folder, ignored);
    file = (real.empty() ? folder.lexically_normal() : real) / file.filename();
    const auto target = std::filesystem::read_symlink(file, ignored);
    if (target.empty()) break;
    file = file.parent_path() / target;
  }
  const std::u8string name = file.u8string();
  std::string text(name.begin(), name.end());
  constexpr bool kHasDrives = std::filesystem::path::preferred_separator == '\\';
  return kHasDrives ? host.locale.FoldCase(text) : text;
}

void CheckOutput(const Host& host, const std::string& path, const OutputKind& kind,
                 const std::vector<std::string>& used) {
  const Files& files = host.files;
  if (IsOpenAlready(path)) {
    if (kind.is_added_to) return;
    Refuse(path, "the caller has opened what is there. Give the name of an ordinary file.");
  }
  if (IsPipe(files, path)) return;
  const std::string identity = FileIdentity(host, path);
  const bool is_used = std::any_of(used.begin(), used.end(), [&](const std::string& other) {
    return !other.empty() && FileIdentity(host, other) == identity;
  });
  if (is_used) Refuse(path, "this command needs that file for something else. Give another name.");
  if (!files.Exists(path)) return;
  const std::string beginning = BeginningOf(files, path, kind);
  if (beginning.empty() || kind.is_known(beginning)) return;
  const std::string what = IsDatabase(files, path) ? "a database" : "not " + std::string(kind.name);
  Refuse(path, "the file there is " + what + ". " + kind.advice);
}

std::unique_ptr<FileReplacement> BeginOutput(const Host& host, const std::string& path,
                                             const OutputKind& kind,
                                             const std::vector<std::string>& used) {
  CheckOutput(host, path, kind, used);
  return host.files.Replace(path);
}

TextOutput::TextOutput(const Host& host, const std::string& path, const OutputKind& kind,
                       const std::vector<std::string>& used) {
  const bool is_standard = path.empty() || path == "-" || path == "/dev/stdout";
  if (!is_standard) file_ = BeginOutput(host, path, kind, used);
}

void TextOutput::Write(const std::string& text) {
  if (file_ == nullptr) {
    std::cout << text;
    return;
  }
  file_->Write(std::as_bytes(std::span(text)));
  file_->Commit();
}

}  // namespace vok::cli
