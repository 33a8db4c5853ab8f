// One open settings file: a SQLite database, marked as ours.
//
// Rollback journal, full synchronisation. Texts compare without regard to case, by the collation
// `vok_nocase`, which folds as the locale port does. Every failure is the provider's.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/locale.h"
#include "providers/database/sqlite/folder_lock.h"

struct sqlite3;
struct sqlite3_stmt;

namespace vok {

inline constexpr int32_t kDefaultTimeout = 30;  // seconds, as the platform's

/// Connections, rows and structures share it; the one that closes it closes it for all.
class SqliteStore {
 public:
  /// Opens an existing file of ours. Fails with -2147467259 for a missing file (none is made), one
  /// that is empty, damaged, of another program, of a newer version, or a genuine Jet database; no
  /// such file is touched. `path` is the system's; all but it outlive the store.
  static std::shared_ptr<SqliteStore> Open(Files& files, const Locale& locale,
                                           LockPatience& patience, const std::string& path,
                                           int32_t timeout);
  /// A new store of ours without tables, in memory. `file` is what it will be, a native path.
  static std::shared_ptr<SqliteStore> InMemory(const Locale& locale, LockPatience& patience,
                                               const std::string& file);

  SqliteStore(const SqliteStore&) = delete;
  SqliteStore& operator=(const SqliteStore&) = delete;
  ~SqliteStore() { Close(); }

  void Close() noexcept;
  bool IsOpen() const { return database_ != nullptr; }
  /// Fails with 3704 when it is closed.
  sqlite3* Handle() const;

  const Locale& locale() const { return locale_; }
  const std::string& file() const { return file_; }
  /// Seconds that locks of others are waited for; 0 waits without end.
  void SetTimeout(int32_t seconds);

  /// From now on every change fails with -2147217911 and the words.
  void RefuseWriting(std::string why) { why_not_written_ = std::move(why); }

  /// The file that the store is, or would be.
  std::string Bytes() const;

  void Execute(const std::string& sql);
  /// Begins a transaction that keeps every other writer out.
  void BeginWriting();
  /// The first column of the first row.
  int64_t Number(const std::string& sql);
  bool InTransaction() const;
  void RollBack() noexcept;
  [[noreturn]] void Throw(int code) const;

 private:
  SqliteStore(const Locale& locale, LockPatience& patience, std::string file);
  void OpenHandle(const char* path, int flags);
  /// For the library, after each refusal of a lock: waits a little; 0 when that was long enough.
  static int WaitForLock(void* store, int times);
  bool IsBlank();
  void CheckIsOurs();
  void CheckIsWhole();
  int64_t FileSize() const;

  const Locale& locale_;
  LockPatience& patience_;
  std::string file_;             ///< native
  std::string why_not_written_;  ///< empty: it may be
  int32_t timeout_ = 0;
  mutable std::chrono::milliseconds most_wait_{0};
  std::optional<LockWait> wait_;
  sqlite3* database_ = nullptr;
};

/// All or nothing: without `Commit` the destructor takes back what was written. Inside a
/// transaction that is open already it leaves all to that one.
class WriteScope {
 public:
  explicit WriteScope(SqliteStore& store);
  WriteScope(const WriteScope&) = delete;
  WriteScope& operator=(const WriteScope&) = delete;
  ~WriteScope();
  void Commit();

 private:
  SqliteStore& store_;
  bool owns_;
};

/// The name in the store's quotes.
std::string Quoted(std::string_view name);

}  // namespace vok
