#include "env/environment.h"

#include <utility>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr char kSettingsKey[] = "Software\\Vok\\Varnel 17";
constexpr uint32_t kIniBufferSize = 255;

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
