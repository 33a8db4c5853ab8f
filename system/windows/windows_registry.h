// The registry and the private profile, by the system's ANSI calls, and by its wide ones where a
// text has characters that the user's code page lacks.
//
// Texts are UTF-8 on our side; sizes count our bytes.
#pragma once

#include <string>

#include "platform/registry.h"

namespace vok::windows {

/// Stateless: handles are the system's own.
class WindowsRegistry : public Registry {
 public:
  int32_t OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) override;
  int32_t QueryValue(RegistryKey key, const std::string& name, uint32_t& type, std::string* buffer,
                     uint32_t& size) override;
  int32_t CloseKey(RegistryKey key) override;
  uint32_t PrivateProfileString(const std::string& section, const std::string& key,
                                std::string& buffer, uint32_t size,
                                const std::string& file) override;
};

}  // namespace vok::windows
