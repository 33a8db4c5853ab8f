// The files and the locale that tests of any operating system use, by POSIX and ICU.
#pragma once

#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"

namespace vok::test {
using NativeFiles = PosixFiles;
using NativeLocale = IcuLocale;
}  // namespace vok::test
