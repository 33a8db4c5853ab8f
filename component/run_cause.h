// Why a run failed: the failures that its procedures report, passed on to the message boxes.
#pragma once

#include <string>

#include "platform/failure.h"
#include "platform/message_box.h"
#include "platform/text.h"

namespace vok {

/// The text with its line ends, and the blanks around them, made one blank each.
inline std::string WithoutLineEnds(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view piece = TrimBlanks(text.substr(0, end));
    if (!line.empty() && !piece.empty()) line += ' ';
    line += piece;
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return line;
}

/// Stands between a run and its message boxes.
class RunCause : public MessageBoxes {
 public:
  explicit RunCause(MessageBoxes& shown) : shown_(shown) {}

  MessageAnswer Show(const MessageBox& box) override { return shown_.Show(box); }
  void Note(const Failure& failure) override {
    const std::string line = WithoutLineEnds(failure.description());
    if (text_.find(line) == std::string::npos) text_ += (text_.empty() ? "" : "; ") + line;
    shown_.Note(failure);
  }
  /// One line; "" when no failure was reported.
  const std::string& text() const { return text_; }

 private:
  MessageBoxes& shown_;
  std::string text_;
};

}  // namespace vok
