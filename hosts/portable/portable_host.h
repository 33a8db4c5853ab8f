// Puts the portable providers together: everything that the system needs, without a platform's own
// objects.
#pragma once

#include <memory>
#include <string>

#include "platform/host.h"

namespace vok::portable {

/// Owns the providers; the `Host` refers to them and lives no longer.
class PortableHost {
 public:
  /// `settings_folder` stands in for the registry's value; empty: the registry decides.
  /// `message_boxes` are the caller's and outlive this object; nullptr: printed to standard error.
  explicit PortableHost(const std::string& settings_folder, MessageBoxes* message_boxes = nullptr);
  ~PortableHost();
  PortableHost(const PortableHost&) = delete;
  PortableHost& operator=(const PortableHost&) = delete;

  const Host& host() const;

 private:
  struct Providers;
  std::unique_ptr<Providers> providers_;
};

}  // namespace vok::portable
