// The part of a form's window that scrolls: a dialog in the dialog, for the page of the form.
//
// What happens to its controls is told to the window as if they stood there. It does not own its
// window, which goes with the form's.
#pragma once

#include <functional>

#include "ui/win32/controls_header.h"
#include "ui/win32/grid_layout.h"

namespace vok::windows {

/// The number of the panel in its window.
inline constexpr int kPanelId = 99;

/// To the window: the page was scrolled and is to be arranged anew.
inline constexpr UINT kScrolled = WM_APP;
/// To the window: the splitter is to stand at the x in wparam.
inline constexpr UINT kSplit = WM_APP + 1;

class ScrollPanel {
 public:
  /// Failure 7 when the system has no room for it.
  ScrollPanel(HWND dialog, bool right_to_left);
  ScrollPanel(const ScrollPanel&) = delete;
  ScrollPanel& operator=(const ScrollPanel&) = delete;

  HWND window() const { return window_; }

  /// Takes that place in the window. `needed` gives what the page needs when it is so wide.
  void Place(const Area& area, const std::function<Extent(int width)>& needed);
  /// What the page fills: what can be seen at once, or more.
  Extent page() const { return page_; }
  /// How far it is scrolled.
  Extent offset() const { return offset_; }
  void SetSplitter(const Area& splitter) { splitter_ = splitter; }
  /// Scrolls so that the part of the page can be seen, or else its beginning.
  void Reveal(HWND part);
  /// Whether nothing of the part is out of sight; true for what is not in the page.
  bool Shows(HWND part) const { return WayTo(part) == Extent{}; }

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void OnBar(int bar, int code);
  void OnWheel(int distance);
  bool OnCursor() const;
  void OnMove(LPARAM place) const;
  bool IsOnSplitter(POINT place) const;
  Extent WayTo(HWND part) const;
  void ScrollTo(Extent offset);
  void SetBar(int bar, int seen, int whole, int at) const;

  HWND window_ = nullptr;
  Extent seen_, page_, offset_;
  Area splitter_;
};

}  // namespace vok::windows
