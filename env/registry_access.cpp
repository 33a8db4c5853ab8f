#include "env/registry_access.h"

#include <algorithm>
#include <array>

namespace vok {
namespace {

constexpr int32_t kSuccess = 0;

constexpr std::array<const char*, 4> kRootNames = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
                                                   "HKEY_LOCAL_MACHINE", "HKEY_USERS"};

void Record(OpenKeyTable& open_keys, RegistryKey handle, std::string name) {
  const auto known = std::ranges::find(open_keys, handle, &OpenKey::handle);
  if (known == open_keys.end()) {
    open_keys.push_back({handle, std::move(name)});
  } else {
    known->name = std::move(name);
  }
}

}  // namespace

std::string KeyName(const OpenKeyTable& open_keys, RegistryKey key) {
  if (key >= kClassesRoot && key <= kUsers) return kRootNames[key - kClassesRoot];
  const auto known = std::ranges::find(open_keys, key, &OpenKey::handle);
  return known == open_keys.end() ? std::string() : known->name;
}

std::optional<RegistryKey> RegOpenKey(Registry& registry, OpenKeyTable& open_keys,
                                      RegistryKey parent, const std::string& path) {
  RegistryKey opened = 0;
  if (registry.OpenKey(parent, path, opened) != kSuccess) return std::nullopt;
  Record(open_keys, opened, KeyName(open_keys, parent) + "\\" + path);
  return opened;
}

std::optional<std::string> RegQueryString(Registry& registry, RegistryKey key,
                                          const std::string& name) {
  uint32_t type = 0;
  uint32_t size = 0;
  const int32_t learned = registry.QueryValue(key, name, type, nullptr, size);
  if (learned != kSuccess || type != kRegistryString) return std::nullopt;
  std::string buffer(size, ' ');
  if (registry.QueryValue(key, name, type, &buffer, size) != kSuccess) return std::nullopt;
  return buffer.substr(0, buffer.find('\0'));
}

bool RegCloseKey(Registry& registry, RegistryKey key) { return registry.CloseKey(key) == kSuccess; }

}  // namespace vok
