#include "providers/database/sqlite/store_failure.h"

#include <sqlite3.h>

#include <cerrno>
#include <system_error>

#include "platform/failure.h"

namespace vok {
namespace {

struct Meaning {
  int32_t number;
  std::string text;
};

std::string SystemWords(sqlite3* database) {
  const int error = database == nullptr ? 0 : sqlite3_system_errno(database);
  return error == 0 ? "" : " (" + std::generic_category().message(error) + ")";
}

/// Whether its device did not give what was to be read. The store takes this for damage of the
/// file.
bool IsUnreadable(sqlite3* database, int extended) {
  if (extended == SQLITE_IOERR_READ || extended == SQLITE_IOERR_CORRUPTFS) return true;
  if ((extended & 0xFF) != SQLITE_CORRUPT || database == nullptr) return false;
  int error = 0;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_LAST_ERRNO, &error);
  return error == EIO;
}

Meaning MeaningOf(sqlite3* database, int extended, int32_t waited) {
  namespace number = failure_number;
  const int code = extended & 0xFF;
  if (IsUnreadable(database, extended)) {
    return {number::kUnspecified,
            "the disk, or the network that it is on, cannot read it (" +
                std::generic_category().message(EIO) +
                "). The file may be good: leave it as it is, and try again when the disk works."};
  }
  if (extended == SQLITE_IOERR_WRITE || extended == SQLITE_IOERR_FSYNC) {
    return {
        number::kUnspecified,
        "the disk does not take what is written: it is full, at a limit, or broken. Nothing was "
        "changed. Free space on it and try again."};
  }
  switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return {number::kUnspecified, "another program held it locked for all of the " +
                                        std::to_string(waited) +
                                        " seconds that were waited. Close that program, or try "
                                        "again."};
    case SQLITE_FULL:
      return {number::kUnspecified,
              "the disk is full. Nothing was changed. Free space on it and try again."};
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return {number::kReadOnly,
              "it must not be written. Check the permissions of the file and its folder."};
    case SQLITE_CANTOPEN:
      return {number::kUnspecified, "it, or the journal beside it, cannot be opened" +
                                        SystemWords(database) +
                                        ". Check the permissions of the file and its folder."};
    case SQLITE_NOTADB:
      return {number::kUnspecified,
              "it is not a settings database. Check the name; the file was not touched."};
    case SQLITE_CORRUPT:
      return {number::kUnspecified,
              "it is damaged. Put a copy in its place, or move it away to start a new one."};
    case SQLITE_NOMEM:
      return {number::kOutOfMemory, "out of memory."};
    default:
      return {number::kUnspecified,
              "the store says \"" +
                  std::string(database == nullptr ? sqlite3_errstr(extended)
                                                  : sqlite3_errmsg(database)) +
                  "\"" + SystemWords(database) + "."};
  }
}

Meaning ConstraintMeaning(sqlite3* database, int extended) {
  const std::string words = sqlite3_errmsg(database);
  switch (extended) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
      return {failure_number::kIntegrity,
              "a row with the same key exists already (" + words + "). Choose another name."};
    case SQLITE_CONSTRAINT_CHECK:
    case SQLITE_CONSTRAINT_DATATYPE:
      return {failure_number::kColumnOverflow, "a value does not fit its column (" + words + ")."};
    default:
      return {failure_number::kIntegrity, words + "."};
  }
}

}  // namespace

void ThrowStoreFailure(sqlite3* database, int code, const std::string& file, int32_t waited) {
  const bool constraint = (code & 0xFF) == SQLITE_CONSTRAINT && database != nullptr;
  const Meaning meaning =
      constraint ? ConstraintMeaning(database, code) : MeaningOf(database, code, waited);
  throw Failure(meaning.number, "Settings database \"" + file + "\": " + meaning.text);
}

void ThrowUnusable(const std::string& file, const std::string& why) {
  throw Failure(failure_number::kUnspecified, "Settings database \"" + file + "\": " + why);
}

}  // namespace vok
