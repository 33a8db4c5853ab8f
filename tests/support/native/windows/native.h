// The files and the locale that tests of any operating system use, by Windows.
#pragma once

#include "hosts/windows/platform/windows_files.h"
#include "hosts/windows/platform/windows_locale.h"

namespace vok::test {
using NativeFiles = windows::WindowsFiles;
using NativeLocale = windows::WindowsLocale;
}  // namespace vok::test
