// What the windows under test work on: a host in memory with a real locale, and a scripted user.
#pragma once

#include <string>

#include "system/posix/icu_locale.h"
#include "tests/support/memory_host.h"
#include "tests/support/ui/scripted_toolkit.h"
#include "ui/model/toolkit.h"

namespace vok::test {

struct WindowHost {
  explicit WindowHost(const std::string& locale_name) : locale(locale_name) {}

  IcuLocale locale;
  MemoryHost memory;
  Host host =
      memory.On(memory.no_database, memory.no_cube, memory.no_spreadsheet, locale, memory.clock);
  Publics publics;
  ScriptedToolkit toolkit;
  WindowServices services{host, publics, toolkit};
};

}  // namespace vok::test
