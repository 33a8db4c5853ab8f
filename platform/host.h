// The platform under the system, handed out as one bundle.
#pragma once

#include <string>

#include "platform/calendar.h"
#include "platform/cube.h"
#include "platform/database.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/message_box.h"
#include "platform/registry.h"
#include "platform/spreadsheet.h"

namespace vok {

/// What the component knows of itself, from its own version record.
struct ComponentInfo {
  std::string folder;          ///< folder of the component's own file, without a closing separator
  std::string language_table;  ///< of the texts of windows; "": Lang.rs in that folder
  std::string product_name = "VokCubeQ17";
  std::string executable_name = "VokCubeQ17";
  int major = 16;
  int minor = 8;
  int revision = 28;
};

/// The ports. The maker of a `Host` owns what it refers to and keeps it alive.
struct Host {
  ComponentInfo component;
  Files& files;
  Registry& registry;
  Locale& locale;
  Clock& clock;
  MessageBoxes& message_boxes;
  Database& database;
  CubeProvider& cube;
  Spreadsheet& spreadsheet;
};

}  // namespace vok
