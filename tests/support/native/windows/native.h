// The files, the locale and the registry that tests of any operating system use, by Windows.
#pragma once

#include "system/windows/windows_files.h"
#include "system/windows/windows_locale.h"
#include "system/windows/windows_registry.h"

namespace vok::test {
using NativeFiles = windows::WindowsFiles;
using NativeLocale = windows::WindowsLocale;
using NativeRegistry = windows::WindowsRegistry;
}  // namespace vok::test
