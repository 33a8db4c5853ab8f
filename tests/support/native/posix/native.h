// The files, the locale and the registry that tests of any operating system use, by POSIX and ICU.
#pragma once

#include "system/posix/file_registry.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"

namespace vok::test {
using NativeFiles = PosixFiles;
using NativeLocale = IcuLocale;

/// Holds no keys.
class NativeRegistry : PosixFiles, IcuLocale, public FileRegistry {
 public:
  NativeRegistry() : IcuLocale("en_GB"), FileRegistry(*this, *this, {"none"}) {}
};
}  // namespace vok::test
