// The registry and the private profile, by the four operations that the system uses.
#pragma once

#include <cstdint>
#include <string>

namespace vok {

/// Handle of a registry key: one of the predefined roots, or one that `OpenKey` gave.
using RegistryKey = uint32_t;

inline constexpr RegistryKey kClassesRoot = 0x80000000;
inline constexpr RegistryKey kCurrentUser = 0x80000001;
inline constexpr RegistryKey kLocalMachine = 0x80000002;
inline constexpr RegistryKey kUsers = 0x80000003;

/// Value type of a string (REG_SZ).
inline constexpr uint32_t kRegistryString = 1;

/// Statuses are the platform's: 0 is success.
class Registry {
 public:
  virtual ~Registry() = default;

  /// `RegOpenKeyA`: on success `opened` receives the new handle.
  virtual int32_t OpenKey(RegistryKey parent, const std::string& path, RegistryKey& opened) = 0;
  /// `RegQueryValueExA`: the value's type and size in bytes (its closing NUL counted); with a
  /// buffer also its bytes. `buffer` is nullptr, or as long as the size learned before.
  virtual int32_t QueryValue(RegistryKey key, const std::string& name, uint32_t& type,
                             std::string* buffer, uint32_t& size) = 0;
  /// `RegCloseKey`.
  virtual int32_t CloseKey(RegistryKey key) = 0;
  /// `GetPrivateProfileStringA` with an empty default: at most `size` - 1 characters of the value
  /// (UTF-16 units, never part of a character) and a closing NUL are copied into `buffer`, which
  /// grows where their bytes are more; returns the bytes copied without the NUL.
  virtual uint32_t PrivateProfileString(const std::string& section, const std::string& key,
                                        std::string& buffer, uint32_t size,
                                        const std::string& file) = 0;
  /// What kept the last `OpenKey` from reading the registry at all, for a person to read; "" when
  /// it could be read.
  virtual std::string Problem() const { return {}; }
};

}  // namespace vok
