// Message boxes.
#pragma once

#include <cstdint>
#include <string>

namespace vok {

class Failure;

enum class MessageIcon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class MessageButtons { kOk, kYesNo, kYesNoCancel };
enum class MessageAnswer { kOk, kCancel, kYes, kNo };

struct MessageBox {
  std::string text;
  std::string title;  ///< empty: the platform's default title
  MessageIcon icon = MessageIcon::kNone;
  MessageButtons buttons = MessageButtons::kOk;
  std::string help_file;
  int32_t help_context = 0;  ///< below 1: the box has no help

  friend bool operator==(const MessageBox&, const MessageBox&) = default;
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual MessageAnswer Show(const MessageBox& box) = 0;
  /// A failure that the next box tells, for who wants it without the box's other words.
  virtual void Note(const Failure&) {}
};

}  // namespace vok
