// Where a form's window stands on the screen, and what is remembered of it for the person.
#pragma once

#include <string>

#include "ui/win32/controls_header.h"
#include "ui/win32/grid_layout.h"

namespace vok::windows {

/// Keeps a text for the user under that name. What cannot be written is forgotten.
void KeepText(const std::string& name, const std::string& text);
/// "" where nothing is kept.
std::string KeptText(const std::string& name);

/// What the screen that the window is on has for windows.
RECT WorkArea(HWND window);

/// Puts the window amid the area, as far as it then is wholly on its screen.
void PlaceAmid(HWND window, const RECT& area);

struct RememberedPlace {
  bool maximized = false;
  int split = 0;  ///< of the splitter, in pixels; 0: it was never moved
};

/// Keeps where the window stands, under the form's name.
void RememberPlace(const std::string& form, HWND window, const RememberedPlace& place);
/// Puts the window there as far as it is on a screen. False when nothing is remembered.
bool RecallPlace(const std::string& form, HWND window, RememberedPlace& place);

}  // namespace vok::windows
