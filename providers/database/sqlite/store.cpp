#include "providers/database/sqlite/store.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/whole_path.h"
#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/query.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {
namespace {

constexpr int kApplicationId = 0x566F6B51;  // "VokQ"
constexpr int kVersion = 1;                 // of the store's own layout
constexpr int kLongestValue = 1'000'000;    // bytes of a row, a text, a statement

int CompareNoCase(void* locale, int size_a, const void* a, int size_b, const void* b) noexcept {
  const std::string_view text_a(static_cast<const char*>(a), static_cast<std::size_t>(size_a));
  const std::string_view text_b(static_cast<const char*>(b), static_cast<std::size_t>(size_b));
  const auto& fold = *static_cast<const Locale*>(locale);
  return fold.FoldCase(text_a).compare(fold.FoldCase(text_b));
}

// The store takes some names for more than a path: none of them is whole or begins with "./".
std::string PlainPath(const std::string& native) {
  return PathOfUtf8(native).has_root_path() ? WholePath(native) : "./" + native;
}

void CheckExists(const Files& files, const std::string& path) {
  const std::string native = files.NativePath(path);
  if (files.IsDirectory(path)) ThrowUnusable(native, "it is a folder. Give the name of the file.");
  if (!files.Exists(path)) {
    ThrowUnusable(native, "could not find the file. Check the settings folder and the name.");
  }
}

// The store's own words for what it cannot read are poor, and it would look for a journal first.
void CheckIsNoJetFile(const Files& files, const std::string& path) {
  if (KindOfDatabase(files, path) != DatabaseKind::kJet) return;
  ThrowUnusable(files.NativePath(path),
                "it is a Jet database, which cannot be read here. It was left as it is.");
}

}  // namespace

SqliteStore::SqliteStore(const Locale& locale, LockPatience& patience, std::string file)
    : locale_(locale), patience_(patience), file_(std::move(file)) {}

std::shared_ptr<SqliteStore> SqliteStore::Open(Files& files, const Locale& locale,
                                               LockPatience& patience, const std::string& path,
                                               int32_t timeout) {
  CheckExists(files, path);
  { const FolderLock wait(files.NativePath(path), FolderLock::Kind::kShared, timeout, patience); }
  CheckIsNoJetFile(files, path);
  const std::string native = PlainPath(files.NativePath(path));
  std::shared_ptr<SqliteStore> store(new SqliteStore(locale, patience, native));
  store->timeout_ = timeout;
  store->OpenHandle(native.c_str(), SQLITE_OPEN_READWRITE);
  store->CheckIsOurs();
  store->CheckIsWhole();
  return store;
}

std::shared_ptr<SqliteStore> SqliteStore::InMemory(const Locale& locale, LockPatience& patience,
                                                   const std::string& file) {
  std::shared_ptr<SqliteStore> store(new SqliteStore(locale, patience, file));
  store->OpenHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  store->Execute("PRAGMA application_id = " + std::to_string(kApplicationId));
  store->Execute("PRAGMA user_version = " + std::to_string(kVersion));
  store->Execute(
      "CREATE TABLE vok_columns (table_name TEXT NOT NULL COLLATE vok_nocase, column_name TEXT NOT "
      "NULL COLLATE vok_nocase, type INT NOT NULL, size INT NOT NULL, nullable INT NOT NULL, "
      "UNIQUE (table_name, column_name)) STRICT");
  return store;
}

void SqliteStore::OpenHandle(const char* path, int flags) {
  const int code = sqlite3_open_v2(path, &database_, flags | SQLITE_OPEN_EXRESCODE, nullptr);
  SetTimeout(timeout_);
  if (code != SQLITE_OK) Throw(code);
  sqlite3_limit(database_, SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_limit(database_, SQLITE_LIMIT_SQL_LENGTH, kLongestValue);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  auto* locale = const_cast<Locale*>(&locale_);
  if (const int made = sqlite3_create_collation_v2(database_, "vok_nocase", SQLITE_UTF8, locale,
                                                   CompareNoCase, nullptr);
      made != SQLITE_OK) {
    Throw(made);
  }
  Execute("PRAGMA synchronous = FULL");
}

// An empty file may be one that another process is making where folders cannot be locked: the lock
// of the file is waited for.
void SqliteStore::CheckIsOurs() {
  if (Number("PRAGMA page_count") == 0) {
    const WriteScope scope(*this);
    if (IsBlank()) {
      ThrowUnusable(file_, "it is empty or cut short. Move it away, and a new one will be made.");
    }
  }
  if (Number("PRAGMA application_id") != kApplicationId) {
    ThrowUnusable(
        file_,
        "it is not a settings database, but a file of another program. It was left as it is.");
  }
  if (Number("PRAGMA user_version") != kVersion) {
    ThrowUnusable(file_, "it was made by another version of this program. Use that one.");
  }
}

bool SqliteStore::IsBlank() { return Number("SELECT count(*) FROM sqlite_schema") == 0; }

// A last page that is not all there would read as zeros. Its size is asked for while the check
// still keeps writers out.
void SqliteStore::CheckIsWhole() {
  Query check(*this, "PRAGMA quick_check(1)");
  if (!check.Step() || check.Text(0) != "ok") Throw(SQLITE_CORRUPT);
  const int64_t size = Number("PRAGMA page_count") * Number("PRAGMA page_size");
  if (FileSize() < size) Throw(SQLITE_CORRUPT);
}

// By the store's own handle: opening the file beside it and closing it would end the store's locks.
int64_t SqliteStore::FileSize() const {
  sqlite3_file* file = nullptr;
  sqlite3_int64 size = 0;
  sqlite3_file_control(database_, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (const int code = file->pMethods->xFileSize(file, &size); code != SQLITE_OK) Throw(code);
  return size;
}

void SqliteStore::Close() noexcept {
  sqlite3_close_v2(database_);
  database_ = nullptr;
}

sqlite3* SqliteStore::Handle() const {
  if (!IsOpen()) {
    throw Failure(
        failure_number::kObjectClosed,
        "Operation is not allowed when the object is closed: the connection to \"" + file_ + "\"");
  }
  return database_;
}

void SqliteStore::SetTimeout(int32_t seconds) {
  timeout_ = std::max<int32_t>(seconds, 0);
  most_wait_ = patience_.For(file_, timeout_);
  sqlite3_busy_handler(database_, WaitForLock, this);
}

int SqliteStore::WaitForLock(void* store, int times) {
  auto& self = *static_cast<SqliteStore*>(store);
  if (times == 0) self.wait_.emplace(self.patience_, self.file_, self.most_wait_);
  return self.wait_->Goes() ? 1 : 0;
}

std::string SqliteStore::Bytes() const {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
      sqlite3_serialize(Handle(), "main", &size, 0), &sqlite3_free);
  if (!bytes) Throw(SQLITE_NOMEM);
  return std::string(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size));
}

void SqliteStore::Execute(const std::string& sql) {
  Query query(*this, sql);
  while (query.Step()) {
  }
}

void SqliteStore::BeginWriting() {
  if (!why_not_written_.empty()) {
    throw Failure(failure_number::kReadOnly,
                  "Settings database \"" + file_ + "\": " + why_not_written_);
  }
  Execute("BEGIN IMMEDIATE");
  patience_.Forget();
  SetTimeout(timeout_);
}

int64_t SqliteStore::Number(const std::string& sql) {
  Query query(*this, sql);
  return query.Step() ? query.Integer(0) : 0;
}

bool SqliteStore::InTransaction() const { return sqlite3_get_autocommit(Handle()) == 0; }

void SqliteStore::RollBack() noexcept {
  if (IsOpen() && sqlite3_get_autocommit(database_) == 0) {
    sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

void SqliteStore::Throw(int code) const {
  if ((code & 0xFF) == SQLITE_BUSY) {
    patience_.WaitedInVain(file_);
    most_wait_ = patience_.For(file_, timeout_);
  }
  ThrowStoreFailure(database_, code, file_, timeout_);
}

WriteScope::WriteScope(SqliteStore& store) : store_(store), owns_(!store.InTransaction()) {
  if (owns_) store_.BeginWriting();
}

WriteScope::~WriteScope() {
  if (owns_) store_.RollBack();
}

void WriteScope::Commit() {
  if (!owns_) return;
  store_.Execute("COMMIT");
  owns_ = false;
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace vok
