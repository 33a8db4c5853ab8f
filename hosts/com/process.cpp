#include "hosts/com/process.h"

#include <memory>
#include <new>

#include "component/publics.h"
#include "hosts/com/version_record.h"
#include "hosts/com/watched_message_boxes.h"
#include "hosts/composition/cube_choice.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/system_host.h"
#include "providers/cube/adomd/adomd_provider.h"
#include "providers/workbook/excel/excel_spreadsheet.h"
#include "system/windows/pumped_wait.h"
#include "system/windows/system_error.h"
#include "system/windows/windows_message_boxes.h"

namespace vok::windows {
namespace {

/// A caller's apartment goes on while it waits: other threads may need an object of it.
class PumpingSignal : public TurnSignal {
 public:
  PumpingSignal() {
    if (!given_.IsOpen()) throw std::bad_alloc();
  }
  void Wait() override {
    const HANDLE given[] = {given_.get()};
    PumpedWait().For(given);
  }
  void Give() override { ::SetEvent(given_.get()); }

 private:
  Handle given_{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
};

/// The system's host, and before its portable cubes and workbooks the platform's own objects, which
/// answer where they are installed.
struct Process {
  WindowsMessageBoxes shown_boxes;
  SystemHost system{"", &shown_boxes};
  const Host& base = system.host();
  WatchedMessageBoxes message_boxes{shown_boxes, base};
  AdomdCubeProvider platform_cube{base.locale};
  CubeChoice cube{base.files, base.cube, platform_cube};
  ExcelSpreadsheet spreadsheet{base.files, base.spreadsheet};
  Host host{ReadComponentInfo(), base.files,    base.registry, base.locale, base.clock,
            message_boxes,       base.database, cube,          spreadsheet};
  Publics publics;
  CallTurns turns{[] { return std::make_unique<PumpingSignal>(); }};
  clMe me{host, publics, OpenQueryWindow, &turns};
};

}  // namespace

clMe& TheClMe() {
  static Process process;
  return process.me;
}

}  // namespace vok::windows
