// Which kind of database a file is, by its first bytes.
#pragma once

#include <string>

#include "platform/files.h"

namespace vok {

enum class DatabaseKind {
  kNone,    ///< the file is missing
  kSqlite,  ///< perhaps a settings file of ours
  kJet,     ///< of any version, ACE's too
  kOther
};

/// Failures are those of `ReadBeginning`.
DatabaseKind KindOfDatabase(const Files& files, const std::string& path);

}  // namespace vok
