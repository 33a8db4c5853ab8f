// A registry whose settings folder the caller decides.
#pragma once

#include <string>

#include "platform/locale.h"
#include "platform/registry.h"

namespace vok {

/// Value "MDBPath" of the current user's key "Software\Vok\Varnel 17" is the given folder, whether
/// the registry below has the key or not; all else, and that too while the folder is "", is
/// answered from below. `below` and `locale` outlive it.
class OverridingRegistry : public Registry {
 public:
  OverridingRegistry(Registry& below, const Locale& locale, const std::string& folder);

  void Use(const std::string& folder);

  int32_t OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) override;
  int32_t QueryValue(RegistryKey key, const std::string& name, uint32_t& type, std::string* buffer,
                     uint32_t& size) override;
  int32_t CloseKey(RegistryKey key) override;
  uint32_t PrivateProfileString(const std::string& section, const std::string& key,
                                std::string& buffer, uint32_t size,
                                const std::string& file) override;
  /// What is decided here needs no registry.
  std::string Problem() const override { return value_.empty() ? below_.Problem() : ""; }

 private:
  Registry& below_;
  const Locale& locale_;
  std::string value_;          ///< with its closing NUL; "": decided below
  RegistryKey below_key_ = 0;  ///< handle below of the key whose value is decided here; 0: none
};

}  // namespace vok
