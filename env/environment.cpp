#include "env/environment.h"

#include "platform/failure.h"

namespace vok {
namespace {

constexpr char kSettingsKey[] = "Software\\Vok\\Varnel 17";
constexpr uint32_t kIniBufferSize = 255;

}  // namespace

std::string GetSettingValue(const Host& host, Environment& environment, const std::string& name) {
  const auto key = RegOpenKey(host.registry, environment.open_keys, kCurrentUser, kSettingsKey);
  if (!key) return {};
  const auto value = RegQueryString(host.registry, *key, name);
  RegCloseKey(host.registry, *key);
  return value.value_or("");
}

bool FindSettingsFolder(const Host& host, Environment& environment) {
  environment.SettingsFolder = GetSettingValue(host, environment, "MDBPath");
  if (!environment.SettingsFolder.empty()) return true;
  environment.SettingsFolder = host.component.folder;
  return false;
}

std::string ReadIniValue(const Host& host, Environment& environment, const std::string& section,
                         const std::string& key) {
  FindSettingsFolder(host, environment);
  std::string buffer(kIniBufferSize, ' ');
  host.registry.PrivateProfileString(section, key, buffer, kIniBufferSize,
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
