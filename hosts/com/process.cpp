#include "hosts/com/process.h"

#include <memory>
#include <new>
#include <vector>

#include "component/publics.h"
#include "hosts/com/module.h"
#include "hosts/com/watched_message_boxes.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/system_host.h"
#include "providers/workbook/excel/excel_spreadsheet.h"
#include "system/automation/ole.h"
#include "system/windows/pumped_wait.h"
#include "system/windows/system_dll.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_message_boxes.h"

namespace vok::windows {
namespace {

using Record = std::vector<std::byte>;

template <typename Function>
Function Versions(const char* name) {
  return RequiredSystemFunction<Function>(L"version.dll", name);
}

Record ReadRecord(const std::wstring& file) {
  const auto size = Versions<decltype(&GetFileVersionInfoSizeW)>("GetFileVersionInfoSizeW");
  const auto read = Versions<decltype(&GetFileVersionInfoW)>("GetFileVersionInfoW");
  DWORD ignored = 0;
  Record record(size(file.c_str(), &ignored));
  if (!record.empty() && !read(file.c_str(), 0, static_cast<DWORD>(record.size()), record.data())) {
    record.clear();
  }
  return record;
}

/// A part of the record; nullptr when it has none of that path.
template <typename Part>
const Part* Find(const Record& record, const std::wstring& path, UINT& size) {
  const auto query = Versions<decltype(&VerQueryValueW)>("VerQueryValueW");
  void* part = nullptr;
  if (record.empty() || !query(record.data(), path.c_str(), &part, &size)) return nullptr;
  return static_cast<const Part*>(part);
}

std::string Text(const Record& record, const std::wstring& name) {
  UINT units = 0;
  const auto* text = Find<wchar_t>(record, L"\\StringFileInfo\\040904B0\\" + name, units);
  return text == nullptr ? std::string() : Utf8(text);
}

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
  SystemHost system{{.message_boxes = &shown_boxes}};
  const Host& base = system.host();
  WatchedMessageBoxes message_boxes{shown_boxes, base};
  ExcelSpreadsheet spreadsheet{base.files, base.spreadsheet};
  Host host{ReadComponentInfo(), base.files,    base.registry, base.locale, base.clock,
            message_boxes,       base.database, base.cube,     spreadsheet};
  Publics publics;
  CallTurns turns{[] { return std::make_unique<PumpingSignal>(); }};
  clMe me{host, publics, OpenQueryWindow, &turns};
};

}  // namespace

ComponentInfo ReadComponentInfo() {
  const std::wstring file = ModuleFile();
  const Record record = ReadRecord(file);
  ComponentInfo info;
  info.folder = Utf8(std::wstring_view(file).substr(0, file.find_last_of(L"\\/")));
  info.product_name = Text(record, L"ProductName");
  info.executable_name = Text(record, L"InternalName");
  info.major = info.minor = info.revision = 0;
  UINT size = 0;
  if (const auto* numbers = Find<VS_FIXEDFILEINFO>(record, L"\\", size)) {
    info.major = HIWORD(numbers->dwFileVersionMS);
    info.minor = LOWORD(numbers->dwFileVersionMS);
    info.revision = LOWORD(numbers->dwFileVersionLS);
  }
  return info;
}

clMe& TheClMe() {
  static Process process;
  return process.me;
}

}  // namespace vok::windows
