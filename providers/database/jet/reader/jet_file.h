// A Jet 4 database, opened to be read.
//
// What cannot be read is an `Unreadable`, whose text goes on after "it": why, and what to do. The
// library that reads the pages may also crash or never come back: only in a process of its own.
#pragma once

#include <glib.h>  // first: the library's header would give it the linkage of C
#include <mdbtools.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace vok::jet {

class Unreadable : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// `what` says which part of the file makes no sense.
[[noreturn]] void ThrowDamaged(const std::string& what);

class JetFile {
 public:
  /// Refuses other versions, encrypted files and those with a password, each with its reason.
  explicit JetFile(const std::string& path);
  JetFile(const JetFile&) = delete;
  JetFile& operator=(const JetFile&) = delete;
  ~JetFile();

  MdbHandle& handle() const { return *handle_; }
  /// The page that defines the table of that name, without regard to the case of ASCII letters;
  /// nothing for an unknown table.
  std::optional<unsigned long> FindTable(const std::string& name) const;

 private:
  void CheckOpen() const;

  MdbHandle* handle_ = nullptr;
};

}  // namespace vok::jet
