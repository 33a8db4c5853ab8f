#include "hosts/com/version_record.h"

#include <vector>

#include "hosts/com/module.h"
#include "system/automation/ole.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

using Record = std::vector<std::byte>;

Record ReadRecord(const std::wstring& file) {
  DWORD ignored = 0;
  Record record(GetFileVersionInfoSizeW(file.c_str(), &ignored));
  if (!record.empty() &&
      !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(record.size()), record.data())) {
    record.clear();
  }
  return record;
}

/// A part of the record; nullptr when it has none of that path.
template <typename Part>
const Part* Find(const Record& record, const std::wstring& path, UINT& size) {
  void* part = nullptr;
  if (record.empty() || !VerQueryValueW(record.data(), path.c_str(), &part, &size)) return nullptr;
  return static_cast<const Part*>(part);
}

std::string Text(const Record& record, const std::wstring& name) {
  UINT units = 0;
  const auto* text = Find<wchar_t>(record, L"\\StringFileInfo\\040904B0\\" + name, units);
  return text == nullptr ? std::string() : Utf8(text);
}

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

}  // namespace vok::windows
