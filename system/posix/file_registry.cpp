#include "system/posix/file_registry.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"
#include "system/posix/unicode_text.h"

namespace vok {
namespace {

std::string_view Unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// The platform's statuses.
constexpr int32_t kSuccess = 0;
constexpr int32_t kNotFound = 2;
constexpr int32_t kInvalidHandle = 6;
constexpr int32_t kMoreData = 234;
constexpr int32_t kUnreadable = 1015;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

constexpr const char* kOwnFile = "/vokcube/registry.reg";

/// As the base directories of desktops are found: a relative path does not count. "" for a user
/// without a home.
std::string UserFolder(const char* variable, const char* below_home) {
  std::string folder = Variable(variable);
  if (folder.starts_with('/')) return folder;
  const std::string home = Variable("HOME");
  return home.empty() ? home : home + below_home;
}

}  // namespace

std::string IniValue(const Locale& locale, std::string_view bytes, const std::string& section,
                     const std::string& key) {
  const std::string text = TextOfBytes(bytes.substr(0, kLargestIniText));
  bool inside = false;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = TrimSpace(TakeLine(rest));
    if (line.starts_with('[')) {
      if (inside) return {};
      const std::size_t end = line.find(']');
      const auto name = line.substr(1, end == std::string_view::npos ? end : end - 1);
      inside = EqualNoCase(locale, TrimSpace(name), section);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!inside || line.starts_with(';') || equals == std::string_view::npos) continue;
    if (EqualNoCase(locale, TrimSpace(line.substr(0, equals)), key)) {
      return std::string(Unquoted(TrimSpace(line.substr(equals + 1))));
    }
  }
  return {};
}

FileRegistry::FileRegistry(const Files& files, const Locale& locale, std::vector<std::string> paths,
                           RegistryKeys otherwise)
    : files_(files), locale_(locale), paths_(std::move(paths)), otherwise_(std::move(otherwise)) {}

std::vector<std::string> FileRegistry::FilesFromEnvironment() {
  if (auto file = Variable("VOKCUBE_REGISTRY"); !file.empty()) return {file};
  std::vector<std::string> files;
  const std::string own = UserFolder("XDG_CONFIG_HOME", "/.config");
  if (!own.empty()) files.push_back(own + kOwnFile);
  std::string shared = Variable("XDG_CONFIG_DIRS");
  if (shared.empty()) shared = "/etc/xdg";
  for (std::string_view rest = shared; !rest.empty();) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    if (folder.starts_with('/')) files.push_back(std::string(folder) + kOwnFile);
    rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
  }
  return files;
}

std::string FileRegistry::DataFolderFromEnvironment() {
  const std::string folder = UserFolder("XDG_DATA_HOME", "/.local/share");
  return folder.empty() ? "" : folder + "/vokcube";
}

std::string FileRegistry::NameOf(RegistryKey key) const {
  switch (key) {
    case kClassesRoot:
      return locale_.FoldCase("HKEY_CLASSES_ROOT");
    case kCurrentUser:
      return locale_.FoldCase("HKEY_CURRENT_USER");
    case kLocalMachine:
      return locale_.FoldCase("HKEY_LOCAL_MACHINE");
    case kUsers:
      return locale_.FoldCase("HKEY_USERS");
    default:
      const auto found = open_.find(key);
      return found == open_.end() ? "" : found->second.name;
  }
}

RegistryKeys FileRegistry::ReadAll() const {
  RegistryKeys all;
  const auto add = [&all](const RegistryKeys& keys) {
    for (const auto& [name, values] : keys) all[name].insert(values.begin(), values.end());
  };
  for (const std::string& path : paths_) {
    try {
      add(ReadRegistryText(locale_, ReadWholeFile(files_, path), path));
    } catch (const Failure& failure) {
      const int32_t number = failure.number();
      const bool missing =
          number == failure_number::kFileNotFound || number == failure_number::kPathNotFound;
      if (!missing) throw;
    }
  }
  add(otherwise_);
  return all;
}

int32_t FileRegistry::OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) {
  const std::string root = NameOf(parent);
  problem_.clear();
  if (root.empty()) return kInvalidHandle;
  try {
    const std::string name = root + "\\" + locale_.FoldCase(path);
    RegistryKeys keys = ReadAll();
    const auto first = keys.lower_bound(name);
    const bool itself = first != keys.end() && first->first == name;
    const auto below = keys.lower_bound(name + "\\");
    const bool above_others = below != keys.end() && below->first.starts_with(name + "\\");
    if (!itself && !above_others) return kNotFound;
    opened = next_++;
    open_[opened] = {name, itself ? std::move(first->second) : RegistryValues{}};
    return kSuccess;
  } catch (const Failure& failure) {
    problem_ = failure.description();
    return kUnreadable;
  }
}

int32_t FileRegistry::QueryValue(RegistryKey key, const std::string& name, uint32_t& type,
                                 std::string* buffer, uint32_t& size) {
  const auto found = open_.find(key);
  if (found == open_.end()) return kInvalidHandle;
  const auto value = found->second.values.find(locale_.FoldCase(name));
  if (value == found->second.values.end()) return kNotFound;
  const std::string& bytes = value->second.bytes;
  type = value->second.type;
  const auto needed = static_cast<uint32_t>(bytes.size());
  const bool fits = size >= needed;
  size = needed;
  if (buffer == nullptr) return kSuccess;
  if (!fits) return kMoreData;
  buffer->replace(0, bytes.size(), bytes);
  return kSuccess;
}

int32_t FileRegistry::CloseKey(RegistryKey key) {
  return open_.erase(key) == 1 ? kSuccess : kInvalidHandle;
}

uint32_t FileRegistry::PrivateProfileString(const std::string& section, const std::string& key,
                                            std::string& buffer, uint32_t size,
                                            const std::string& file) {
  if (size == 0) return 0;
  std::string value;
  try {
    if (files_.Exists(file)) value = IniValue(locale_, ReadWholeFile(files_, file), section, key);
  } catch (const Failure&) {  // as the platform does: what cannot be read has no values
  }
  const std::string_view copied = Utf16Prefix(value, size - 1);
  buffer.replace(0, copied.size() + 1, std::string(copied) + '\0');
  return static_cast<uint32_t>(copied.size());
}

}  // namespace vok
