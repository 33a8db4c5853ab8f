#include "hosts/composition/console_message_boxes.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/shown_text.h"

namespace vok {
namespace {

/// The system's own line ends are "\r\n". Lines after the first are indented, and what else a
/// terminal might obey is written out: no text from outside can pass for a message of its own.
std::string Paragraphs(std::string_view text) {
  constexpr std::string_view kLineEnd = "\r\n";
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(kLineEnd), text.size());
    if (!shown.empty() && end > 0) shown += "  ";
    shown += OneLine(text.substr(0, end)) + '\n';
    text.remove_prefix(std::min(end + kLineEnd.size(), text.size()));
  }
  return shown;
}

}  // namespace

MessageAnswer ConsoleMessageBoxes::Show(const MessageBox& box) {
  const std::string text =
      Paragraphs(box.title.empty() ? box.text : OneLine(box.title) + ": " + box.text);
  std::fwrite(text.data(), 1, text.size(), stream_);
  std::fflush(stream_);
  return box.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kNo;
}

}  // namespace vok
