#include "providers/command_line/console_message_boxes.h"

#include <string>

namespace vok {

MessageAnswer ConsoleMessageBoxes::Show(const MessageBox& box) {
  std::string text = box.title.empty() ? box.text : box.title + ": " + box.text;
  std::erase(text, '\r');
  text += '\n';
  std::fwrite(text.data(), 1, text.size(), stream_);
  std::fflush(stream_);
  return box.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kNo;
}

}  // namespace vok
