// The registry in text files, and the private profile in ini files.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "system/posix/registry_text.h"

namespace vok {

inline constexpr std::size_t kLargestIniText = std::size_t{1} << 20;  // bytes; the rest is not read

/// The value of the first such key in the first such section; "" when there is none. Names without
/// regard to case; blanks around names and values, one pair of quotes around a value and lines that
/// begin with ";" do not count. `bytes` are UTF-8, or UTF-16LE with its byte order mark.
std::string IniValue(const Locale& locale, std::string_view bytes, const std::string& section,
                     const std::string& key);

/// Reads its files anew whenever a key is opened under a root; nothing is ever written. A value
/// is that of the first file that has it. A missing file is an empty one; of one that cannot be
/// read the statuses and `Problem` say so, and no failure leaves here. `files` and `locale` outlive
/// it.
class FileRegistry : public Registry {
 public:
  /// `paths` in the standard registry text form; `otherwise`, its names case folded, holds the
  /// values that no file has.
  FileRegistry(const Files& files, const Locale& locale, std::vector<std::string> paths,
               RegistryKeys otherwise = {});

  /// `$VOKCUBE_REGISTRY`, or "vokcube/registry.reg" under `$XDG_CONFIG_HOME` ("~/.config") and then
  /// under each of `$XDG_CONFIG_DIRS` ("/etc/xdg").
  static std::vector<std::string> FilesFromEnvironment();
  /// "vokcube" under `$XDG_DATA_HOME` ("~/.local/share"); "" for a user without a home.
  static std::string DataFolderFromEnvironment();

  int32_t OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) override;
  int32_t QueryValue(RegistryKey key, const std::string& name, uint32_t& type, std::string* buffer,
                     uint32_t& size) override;
  int32_t CloseKey(RegistryKey key) override;
  uint32_t PrivateProfileString(const std::string& section, const std::string& key,
                                std::string& buffer, uint32_t size,
                                const std::string& file) override;
  std::string Problem() const override { return problem_; }

 private:
  struct OpenedKey {
    std::string name;  ///< full, case folded
    RegistryValues values;
  };

  std::string NameOf(RegistryKey key) const;
  RegistryKeys ReadAll() const;

  const Files& files_;
  const Locale& locale_;
  std::vector<std::string> paths_;
  RegistryKeys otherwise_;
  std::map<RegistryKey, OpenedKey> open_;
  RegistryKey next_ = 1;
  std::string problem_;
};

}  // namespace vok
