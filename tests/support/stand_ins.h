// Small stand-ins for the ports to a person or to the machine.
#pragma once

#include <vector>

#include "platform/calendar.h"
#include "platform/message_box.h"

namespace vok::test {

/// Shows nothing, keeps every box.
class RecordingMessageBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox& box) override {
    boxes.push_back(box);
    return answer;
  }
  std::vector<MessageBox> boxes;
  MessageAnswer answer = MessageAnswer::kOk;
};

/// Stands still until told otherwise.
class FixedClock : public Clock {
 public:
  uint32_t Milliseconds() const override { return milliseconds; }
  Date Now() const override { return now; }
  uint32_t milliseconds = 0;
  Date now = Date::FromCivil(2024, 5, 15);
};

}  // namespace vok::test
