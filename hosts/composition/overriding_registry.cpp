#include "hosts/composition/overriding_registry.h"

#include <utility>

#include "env/environment.h"

namespace vok {
namespace {

constexpr RegistryKey kDecidedKey = 0x7FFFFFFF;  // no registry below hands this one out
constexpr int32_t kNotFound = 2;
constexpr int32_t kMoreData = 234;

}  // namespace

OverridingRegistry::OverridingRegistry(Registry& below, const Locale& locale,
                                       const std::string& folder)
    : below_(below), locale_(locale) {
  Use(folder);
}

void OverridingRegistry::Use(const std::string& folder) {
  value_ = folder.empty() ? "" : folder + '\0';
}

int32_t OverridingRegistry::OpenKey(RegistryKey parent, const std::string& path,
                                    RegistryKey& opened) {
  if (value_.empty() || parent != kCurrentUser || !EqualNoCase(locale_, path, kSettingsKey)) {
    return below_.OpenKey(parent, path, opened);
  }
  if (below_key_ == 0 && below_.OpenKey(parent, path, below_key_) != 0) below_key_ = 0;
  opened = kDecidedKey;
  return 0;
}

int32_t OverridingRegistry::QueryValue(RegistryKey key, const std::string& name, uint32_t& type,
                                       std::string* buffer, uint32_t& size) {
  if (key != kDecidedKey) return below_.QueryValue(key, name, type, buffer, size);
  if (!EqualNoCase(locale_, name, "MDBPath")) {
    return below_key_ == 0 ? kNotFound : below_.QueryValue(below_key_, name, type, buffer, size);
  }
  const bool fits = size >= value_.size();
  type = kRegistryString;
  size = static_cast<uint32_t>(value_.size());
  if (buffer == nullptr) return 0;
  if (!fits) return kMoreData;
  buffer->replace(0, value_.size(), value_);
  return 0;
}

int32_t OverridingRegistry::CloseKey(RegistryKey key) {
  if (key != kDecidedKey) return below_.CloseKey(key);
  if (below_key_ != 0) below_.CloseKey(std::exchange(below_key_, 0));
  return 0;
}

uint32_t OverridingRegistry::PrivateProfileString(const std::string& section,
                                                  const std::string& key, std::string& buffer,
                                                  uint32_t size, const std::string& file) {
  return below_.PrivateProfileString(section, key, buffer, size, file);
}

}  // namespace vok
