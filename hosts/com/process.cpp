#include "hosts/com/process.h"

#include "component/publics.h"
#include "hosts/com/version_record.h"
#include "hosts/composition/cube_choice.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/routed_cube.h"
#include "hosts/composition/system_host.h"
#include "providers/cube/adomd/adomd_services.h"
#include "providers/workbook/excel/excel_spreadsheet.h"
#include "system/windows/windows_message_boxes.h"

namespace vok::windows {
namespace {

/// The system's host, and before its portable cubes and workbooks the platform's own objects, which
/// answer where they are installed.
struct Process {
  WindowsMessageBoxes message_boxes;
  SystemHost system{"", &message_boxes};
  const Host& base = system.host();
  AdomdCubeServices platform_cube{base.locale};
  CubeChoice cube_choice{base.files, base.cube, platform_cube};
  RoutedCubeServices cube{
      [this](const std::string& text) -> CubeServices& { return cube_choice.For(text); }};
  ExcelSpreadsheet spreadsheet{base.files, base.spreadsheet};
  Host host{ReadComponentInfo(), base.files,    base.registry, base.locale, base.clock,
            message_boxes,       base.database, cube,          spreadsheet};
  Publics publics;
  clMe me{host, publics, OpenQueryWindow};
};

}  // namespace

clMe& TheClMe() {
  static Process process;
  return process.me;
}

}  // namespace vok::windows
