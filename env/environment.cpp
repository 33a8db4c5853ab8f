#include "env/environment.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/failure.h"

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

/// People should not wonder whose settings they see.
void TellProblem(const Host& host, Environment& environment) {
  std::string problem = host.registry.Problem();
  const bool is_new = problem != environment.RegistryProblem;
  environment.RegistryProblem = std::move(problem);
  if (!is_new || environment.RegistryProblem.empty()) return;
  MessageBox box;
  box.text = environment.RegistryProblem + " Without it the settings folder is \"" +
             host.component.folder + "\".";
  box.title = host.component.product_name;
  box.icon = MessageIcon::kExclamation;
  host.message_boxes.Show(box);
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

std::string GetSettingValue(const Host& host, Environment& environment, const std::string& name) {
  const auto key = RegOpenKey(host.registry, environment.open_keys, kCurrentUser, kSettingsKey);
  if (!key) return {};
  const auto value = RegQueryString(host.registry, *key, name);
  RegCloseKey(host.registry, *key);
  return value.value_or("");
}

bool FindSettingsFolder(const Host& host, Environment& environment) {
  environment.SettingsFolder = GetSettingValue(host, environment, "MDBPath");
  TellProblem(host, environment);
  if (!environment.SettingsFolder.empty()) return true;
  environment.SettingsFolder = host.component.folder;
  return false;
}

std::string ReadIniValue(const Host& host, Environment& environment, const std::string& section,
                         const std::string& key, uint32_t length) {
  FindSettingsFolder(host, environment);
  std::string buffer(length + 1, ' ');
  host.registry.PrivateProfileString(section, key, buffer, length + 1,
                                     environment.SettingsFolder + "\\Qel.ini");
  return buffer.substr(0, buffer.find('\0'));
}

std::string GoToSettingsFolder(const Host& host, const Environment& environment) {
  const std::string& folder = environment.SettingsFolder;
  if (folder.empty() || !host.files.IsDirectory(folder)) return {};
  try {
    host.files.ChangeDirectory(folder);
  } catch (const Failure&) {
    return {};  // a folder that may not be entered counts as none
  }
  return folder;
}

std::string SettingsDatabase(const std::string& folder) { return folder + "\\CubToQel.mdb"; }

}  // namespace vok
