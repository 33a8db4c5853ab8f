// Puts every provider together that this operating system has.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "platform/host.h"
#include "platform/message_box.h"

namespace vok {

/// Prints "title: text", further lines indented, and answers OK, or No to a question. The stream
/// stays the caller's.
class ConsoleMessageBoxes : public MessageBoxes {
 public:
  explicit ConsoleMessageBoxes(std::FILE* stream) : stream_(stream) {}
  MessageAnswer Show(const MessageBox& box) override;

 private:
  std::FILE* stream_;
};

/// Owns the providers; the `Host` refers to them and lives no longer.
class SystemHost {
 public:
  /// `settings_folder` stands in for the registry's value; empty: the registry decides.
  /// `message_boxes` are the caller's and outlive this object; nullptr: printed to standard error.
  explicit SystemHost(const std::string& settings_folder, MessageBoxes* message_boxes = nullptr);
  ~SystemHost();
  SystemHost(const SystemHost&) = delete;
  SystemHost& operator=(const SystemHost&) = delete;

  const Host& host() const;

 private:
  struct Providers;
  std::unique_ptr<Providers> providers_;
};

}  // namespace vok
