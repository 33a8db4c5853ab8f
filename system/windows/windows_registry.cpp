#include "system/windows/windows_registry.h"

#include "platform/text.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

// The kernel's handles and the predefined roots keep their meaning in 32 bits, sign extended.
HKEY KeyOf(RegistryKey key) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<int32_t>(key)));
}

RegistryKey NumberOf(HKEY key) {
  return static_cast<RegistryKey>(reinterpret_cast<ULONG_PTR>(key));
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

/// The value's bytes as the system has them. They may grow between two calls.
LSTATUS ReadValue(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  DWORD size = 0;
  LSTATUS status = ::RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size);
  while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
    bytes.resize(size);
    status = ::RegQueryValueExA(key, name.c_str(), nullptr, &type,
                                reinterpret_cast<BYTE*>(bytes.data()), &size);
    if (status == ERROR_SUCCESS) {
      bytes.resize(size);
      break;
    }
  }
  return status;
}

}  // namespace

int32_t WindowsRegistry::OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) {
  HKEY key = nullptr;
  const LSTATUS status = ::RegOpenKeyA(KeyOf(parent), AnsiText(path).c_str(), &key);
  if (status == ERROR_SUCCESS) opened = NumberOf(key);
  return status;
}

int32_t WindowsRegistry::QueryValue(RegistryKey key, const std::string& name, uint32_t& type,
                                    std::string* buffer, uint32_t& size) {
  std::string bytes;
  DWORD system_type = 0;
  const LSTATUS status = ReadValue(KeyOf(key), AnsiText(name), system_type, bytes);
  if (status != ERROR_SUCCESS) return status;
  if (IsText(system_type)) bytes = Utf8OfAnsi(bytes);
  type = system_type;
  const bool fits = size >= bytes.size();
  size = static_cast<uint32_t>(bytes.size());
  if (buffer == nullptr) return ERROR_SUCCESS;
  if (!fits) return ERROR_MORE_DATA;
  buffer->replace(0, bytes.size(), bytes);
  return ERROR_SUCCESS;
}

int32_t WindowsRegistry::CloseKey(RegistryKey key) { return ::RegCloseKey(KeyOf(key)); }

uint32_t WindowsRegistry::PrivateProfileString(const std::string& section, const std::string& key,
                                               std::string& buffer, uint32_t size,
                                               const std::string& file) {
  if (size == 0) return 0;
  std::string ansi(size, '\0');
  ansi.resize(::GetPrivateProfileStringA(AnsiText(section).c_str(), AnsiText(key).c_str(), "",
                                         ansi.data(), size, AnsiText(NativePath(file)).c_str()));
  const std::string value = Utf8OfAnsi(ansi);
  const std::string_view copied = Utf16Prefix(value, size - 1);
  buffer.replace(0, copied.size() + 1, std::string(copied) + '\0');
  return static_cast<uint32_t>(copied.size());
}

}  // namespace vok::windows
