#include "system/windows/windows_registry.h"

#include <cstring>
#include <functional>

#include "platform/text.h"
#include "platform/whole_path.h"
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

using Query = LSTATUS(DWORD& type, BYTE* bytes, DWORD& size);

/// The value's bytes as the system has them. They may grow between two calls.
LSTATUS ReadBytes(const std::function<Query>& query, DWORD& type, std::string& bytes) {
  DWORD size = 0;
  LSTATUS status = query(type, nullptr, size);
  while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
    bytes.resize(size);
    status = query(type, reinterpret_cast<BYTE*>(bytes.data()), size);
    if (status == ERROR_SUCCESS) {
      bytes.resize(size);
      break;
    }
  }
  return status;
}

std::string TextOf(const std::string& utf16_bytes) {
  std::wstring text(utf16_bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), utf16_bytes.data(), text.size() * sizeof(wchar_t));
  return Utf8(text);
}

LSTATUS ReadWide(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  const std::wstring wide_name = Utf16(name);
  const LSTATUS status = ReadBytes(
      [&](DWORD& found, BYTE* buffer, DWORD& size) {
        return ::RegQueryValueExW(key, wide_name.c_str(), nullptr, &found, buffer, &size);
      },
      type, bytes);
  if (status == ERROR_SUCCESS && IsText(type)) bytes = TextOf(bytes);
  return status;
}

LSTATUS ReadAnsi(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  const std::string ansi_name = AnsiText(name);
  const LSTATUS status = ReadBytes(
      [&](DWORD& found, BYTE* buffer, DWORD& size) {
        return ::RegQueryValueExA(key, ansi_name.c_str(), nullptr, &found, buffer, &size);
      },
      type, bytes);
  if (status == ERROR_SUCCESS && IsText(type)) bytes = Utf8OfAnsi(bytes);
  return status;
}

/// Texts in UTF-8, other values as they are.
LSTATUS ReadValue(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  const LSTATUS status = ReadWide(key, name, type, bytes);
  const bool has_ansi_form = HasAnsiForm(name) && (!IsText(type) || HasAnsiForm(bytes));
  if (status != ERROR_SUCCESS || !has_ansi_form) return status;
  return ReadAnsi(key, name, type, bytes);
}

std::string ReadWideProfile(const std::string& section, const std::string& key, uint32_t size,
                            const std::string& file) {
  std::wstring wide(size, L'\0');
  wide.resize(::GetPrivateProfileStringW(Utf16(section).c_str(), Utf16(key).c_str(), L"",
                                         wide.data(), size, Utf16(file).c_str()));
  return Utf8(wide);
}

std::string ReadAnsiProfile(const std::string& section, const std::string& key, uint32_t size,
                            const std::string& file) {
  std::string ansi(size, '\0');
  ansi.resize(::GetPrivateProfileStringA(AnsiText(section).c_str(), AnsiText(key).c_str(), "",
                                         ansi.data(), size, AnsiText(file).c_str()));
  return Utf8OfAnsi(ansi);
}

}  // namespace

int32_t WindowsRegistry::OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) {
  HKEY key = nullptr;
  const LSTATUS status = HasAnsiForm(path)
                             ? ::RegOpenKeyA(KeyOf(parent), AnsiText(path).c_str(), &key)
                             : ::RegOpenKeyW(KeyOf(parent), Utf16(path).c_str(), &key);
  if (status == ERROR_SUCCESS) opened = NumberOf(key);
  return status;
}

int32_t WindowsRegistry::QueryValue(RegistryKey key, const std::string& name, uint32_t& type,
                                    std::string* buffer, uint32_t& size) {
  std::string bytes;
  DWORD system_type = 0;
  const LSTATUS status = ReadValue(KeyOf(key), name, system_type, bytes);
  if (status != ERROR_SUCCESS) return status;
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
  const std::string path = WholePath(NativePath(file));  // other ones mean the system's folder
  std::string value = ReadWideProfile(section, key, size, path);
  if (HasAnsiForm(section + key + path + value)) {
    value = ReadAnsiProfile(section, key, size, path);
  }
  const std::string_view copied = Utf16Prefix(value, size - 1);
  buffer.replace(0, copied.size() + 1, std::string(copied) + '\0');
  return static_cast<uint32_t>(copied.size());
}

}  // namespace vok::windows
