// Message boxes of a host program that may run where nobody sees them.
#pragma once

#include "env/environment.h"
#include "platform/host.h"

namespace vok::windows {

/// Shows a box where it can be seen. Elsewhere its text goes to "Messages.log" beside the query
/// logs, with the date, and the answer is the box's default button.
class WatchedMessageBoxes : public MessageBoxes {
 public:
  /// Both outlive this; `host` is where the log is written.
  WatchedMessageBoxes(MessageBoxes& boxes, const Host& host) : boxes_(boxes), host_(host) {}
  MessageAnswer Show(const MessageBox& box) override;

 private:
  void WriteDown(const MessageBox& box) noexcept;

  MessageBoxes& boxes_;
  const Host& host_;
  Environment environment_;  ///< of the log
};

}  // namespace vok::windows
