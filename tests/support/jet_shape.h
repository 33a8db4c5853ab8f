// What the settings want of a Jet file, as the hosts put it together.
#pragma once

#include "providers/database/jet/jet_files.h"
#include "settings/settings_tables.h"

namespace vok::test {

inline jet::Shape SettingsShape(const Locale& locale) {
  jet::Shape shape;
  shape.tables = SettingsTables();
  shape.nothing = NothingIn;
  shape.complete = [&locale](DatabaseStructure& structure) { CompleteShape(locale, structure); };
  return shape;
}

}  // namespace vok::test
