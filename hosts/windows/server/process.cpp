#include "hosts/windows/server/process.h"

#include "component/publics.h"
#include "hosts/system/system_host.h"
#include "hosts/windows/ado/chosen_database.h"
#include "hosts/windows/cube/chosen_cube.h"
#include "hosts/windows/excel/excel_spreadsheet.h"
#include "hosts/windows/platform/windows_message_boxes.h"
#include "hosts/windows/server/version_record.h"

namespace vok::windows {
namespace {

/// The system's host with its portable providers, and before these the platform's own objects,
/// which answer where they are installed.
struct Process {
  WindowsMessageBoxes message_boxes;
  SystemHost system{"", &message_boxes};
  const Host& base = system.host();
  ChosenDatabase database{base.files, base.database};
  ChosenCubeServices cube{base.files, base.locale, base.cube};
  ExcelSpreadsheet spreadsheet{base.files, base.spreadsheet};
  Host host{ReadComponentInfo(), base.files, base.registry, base.locale, base.clock,
            message_boxes,       database,   cube,          spreadsheet};
  Publics publics;
  clMe me{host, publics};
};

}  // namespace

clMe& TheClMe() {
  static Process process;
  return process.me;
}

}  // namespace vok::windows
