#include "providers/database/jet/reader/jet_file.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "providers/database/jet/reader/jet_table.h"

namespace vok::jet {
namespace {

constexpr std::size_t kPageSize = 4096;
constexpr unsigned long kCatalogPage = 2;
constexpr int kTableObject = 1;
constexpr int64_t kPageOfId = 0x00FFFFFF;

// Places in the first page.
constexpr std::size_t kMarkAt = 4;
constexpr std::size_t kVersionAt = 0x14;
constexpr std::size_t kPasswordAt = 0x42;
constexpr std::size_t kPasswordSize = 40;
constexpr std::size_t kDateAt = 0x72;

constexpr char kSaveAnew[] =
    " In Access, save it as a database of Access 2000 or 2002-2003 (.mdb).";

/// The bytes before those that every file keeps covered.
void CheckVersion(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Unreadable("cannot be opened: " + std::string(std::strerror(errno)) + ".");
  std::array<char, kVersionAt + 1> head{};
  if (!file.read(head.data(), head.size())) ThrowDamaged("its first page is cut short");
  const std::string_view mark(head.data() + kMarkAt, kVersionAt - kMarkAt);
  if (mark.starts_with("Standard ACE DB")) {
    throw Unreadable(std::string("is of the form of Access 2007 and later (.accdb).") + kSaveAnew);
  }
  if (!mark.starts_with("Standard Jet DB")) throw Unreadable("is not a Jet database.");
  const int version = static_cast<unsigned char>(head[kVersionAt]);
  if (version == MDB_VER_JET3) {
    throw Unreadable(std::string("is a Jet 3 database, of Access 97 or earlier.") + kSaveAnew);
  }
  if (version != MDB_VER_JET4) {
    ThrowDamaged("its version is the unknown number " + std::to_string(version));
  }
  if (std::filesystem::file_size(path) % kPageSize != 0) {
    ThrowDamaged("it is cut short, within a page");
  }
}

/// `page` is the first one, uncovered. The password is covered once more, with the date of making.
bool HasPassword(const unsigned char* page) {
  double date = 0;
  std::memcpy(&date, page + kDateAt, sizeof date);
  const int32_t day = date > 0 && date < 1e6 ? static_cast<int32_t>(date) : 0;
  std::array<unsigned char, sizeof day> cover{};
  std::memcpy(cover.data(), &day, sizeof day);
  for (std::size_t i = 0; i < kPasswordSize; ++i) {
    if (page[kPasswordAt + i] != cover[i % cover.size()]) return true;
  }
  return false;
}

}  // namespace

void ThrowDamaged(const std::string& what) {
  throw Unreadable("is damaged: " + what +
                   ". Let Access compact and repair it, or take an older copy.");
}

JetFile::JetFile(const std::string& path) {
  CheckVersion(path);
  handle_ = mdb_open(path.c_str(), MDB_NOFLAGS);
  if (handle_ == nullptr) ThrowDamaged("its first page cannot be read");
  try {
    CheckOpen();
  } catch (...) {
    mdb_close(handle_);
    throw;
  }
}

JetFile::~JetFile() { mdb_close(handle_); }

// The library leaves the first page in its buffer, uncovered.
void JetFile::CheckOpen() const {
  if (handle_->f->db_key != 0) {
    throw Unreadable("is encrypted. In Access, decode it (Tools, Security) and take it then.");
  }
  if (HasPassword(handle_->pg_buf)) {
    throw Unreadable(
        "has a database password. In Access, open it exclusively, take the password off "
        "(Tools, Security) and take it then.");
  }
}

std::optional<unsigned long> JetFile::FindTable(const std::string& name) const {
  JetTable catalog(*handle_, "MSysObjects", kCatalogPage, {"Id", "Name", "Type"});
  const std::size_t id = catalog.ColumnNamed("Id");
  const std::size_t object = catalog.ColumnNamed("Name");
  const std::size_t type = catalog.ColumnNamed("Type");
  for (const Row& row : catalog.Rows()) {
    if (!row[type].is_number() || row[type] != kTableObject || !row[object].is_string()) continue;
    const auto& found = row[object].get_ref<const std::string&>();
    if (g_ascii_strcasecmp(found.c_str(), name.c_str()) != 0 || !row[id].is_number()) continue;
    return static_cast<unsigned long>(row[id].get<int64_t>() & kPageOfId);
  }
  return std::nullopt;
}

}  // namespace vok::jet
