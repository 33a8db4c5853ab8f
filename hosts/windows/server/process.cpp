#include "hosts/windows/server/process.h"

#include "component/publics.h"
#include "hosts/system/query_window.h"
#include "hosts/system/system_host.h"
#include "hosts/windows/cube/adomd_services.h"
#include "hosts/windows/cube/cube_choice.h"
#include "hosts/windows/excel/excel_spreadsheet.h"
#include "hosts/windows/platform/windows_message_boxes.h"
#include "hosts/windows/server/version_record.h"
#include "providers/routed_cube/routed_cube.h"

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
