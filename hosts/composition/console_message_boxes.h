// Message boxes where nobody sits: printed, and answered at once.
#pragma once

#include <cstdio>

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

}  // namespace vok
