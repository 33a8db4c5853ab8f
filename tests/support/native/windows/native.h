// The files and the locale that tests of any operating system use, by Windows.
#pragma once

#include "system/windows/windows_files.h"
#include "system/windows/windows_locale.h"

namespace vok::test {
using NativeFiles = windows::WindowsFiles;
using NativeLocale = windows::WindowsLocale;
}  // namespace vok::test
