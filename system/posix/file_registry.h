// The registry in a text file, and the private profile in ini files.
#pragma once

#include <map>
#include <string>

#include "platform/files.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "system/posix/registry_text.h"

namespace vok {

/// Reads the file anew whenever a key is opened under a root; nothing is ever written. A missing
/// file is an empty registry; of one that cannot be read the statuses and `Problem` say so, and no
/// failure leaves here. `files` and `locale` outlive it.
class FileRegistry : public Registry {
 public:
  /// `file` in the standard registry text form.
  FileRegistry(const Files& files, const Locale& locale, std::string file);

  /// `$VOKCUBE_REGISTRY`, else "vokcube/registry.reg" under `$XDG_CONFIG_HOME`, else under
  /// "~/.config".
  static std::string FileFromEnvironment();

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

  const Files& files_;
  const Locale& locale_;
  std::string file_;
  std::map<RegistryKey, OpenedKey> open_;
  RegistryKey next_ = 1;
  std::string problem_;
};

}  // namespace vok
