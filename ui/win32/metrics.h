// A font on a screen, and lengths that follow it.
#pragma once

#include <string>

#include "ui/model/form.h"
#include "ui/win32/controls_header.h"
#include "ui/win32/grid_layout.h"

namespace vok::windows {

/// Owns the font that it makes. A family that the system lacks is replaced by the one of the
/// system's own messages.
class Metrics {
 public:
  /// `density` is in dots per inch.
  Metrics(const Font& font, int density);
  Metrics(const Metrics&) = delete;
  Metrics& operator=(const Metrics&) = delete;
  ~Metrics();

  HFONT font() const { return font_; }
  /// Dialog units as pixels: a quarter of a letter's width, an eighth of its height.
  int Across(int units) const { return ::MulDiv(units, letter_.width, 4); }
  int Down(int units) const { return ::MulDiv(units, letter_.height, 8); }
  /// Pixels of a screen of the usual density.
  int Pixels(int usual) const { return ::MulDiv(usual, density_, 96); }
  int Letters(int count) const { return count * letter_.width; }
  int Lines(int count) const { return count * letter_.height; }
  /// Of one line; access marks take no room.
  int WidthOf(const std::wstring& caption) const;
  /// Of a caption that goes on below where it is wider, in the midst of a word if it must.
  int HeightOf(const std::wstring& caption, int width) const;
  /// The text with an ellipsis in its middle where it is wider than `room`.
  std::wstring Shortened(const std::wstring& text, int room) const;

 private:
  HFONT font_;
  int density_;
  Extent letter_;  ///< of the font's letters on average
};

}  // namespace vok::windows
