// A message box as a person finds it on the screen.
#pragma once

#include <string>

namespace vok::windows {

struct Seen {
  std::wstring text;
  bool help = false;
  int default_button = 0;
};

/// Waits until a box of the title has all its parts and is to be seen, in any program, reads it and
/// presses the button. Half a minute at the most: then it has seen nothing.
Seen Press(const std::wstring& title, int button);

}  // namespace vok::windows
