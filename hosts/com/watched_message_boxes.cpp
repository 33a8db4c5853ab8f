#include "hosts/com/watched_message_boxes.h"

#include "reports/query_log.h"
#include "system/windows/windows_message_boxes.h"

namespace vok::windows {
namespace {

MessageAnswer DefaultAnswer(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::kYesNo:
      return MessageAnswer::kNo;
    case MessageButtons::kYesNoCancel:
      return MessageAnswer::kYes;
    default:
      return MessageAnswer::kOk;
  }
}

}  // namespace

MessageAnswer WatchedMessageBoxes::Show(const MessageBox& box) {
  if (HasVisibleScreen()) return boxes_.Show(box);
  WriteDown(box);
  return DefaultAnswer(box.buttons);
}

void WatchedMessageBoxes::WriteDown(const MessageBox& box) noexcept {
  try {
    const std::string when = host_.locale.DateText(host_.clock.Now());
    const std::string title = box.title.empty() ? host_.component.product_name : box.title;
    WriteQueryLog(host_, environment_, when + " " + title + ": " + box.text, "Messages", true, 0,
                  false);
  } catch (...) {  // the failure that the message is about still has its number
  }
}

}  // namespace vok::windows
