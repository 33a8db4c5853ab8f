// The window of one control, drawn and heard.
//
// A widget shows what its control says, writing only what differs, and tells the form what the
// user did. It does not own its window: that goes with the form's. The control outlives it.
#pragma once

#include <memory>
#include <string>

#include "ui/model/form.h"
#include "ui/win32/controls_header.h"
#include "ui/win32/grid_layout.h"
#include "ui/win32/metrics.h"

namespace vok::windows {

/// The text that the window has.
std::wstring TextOf(HWND window);

/// The text with marks of direction around each line that needs them: it is read as its first
/// letter is, where the system would read every text as the window.
std::wstring ReadByItself(const std::wstring& text);

class Widget {
 public:
  explicit Widget(Control& control) : control_(control) {}
  Widget(const Widget&) = delete;
  Widget& operator=(const Widget&) = delete;
  virtual ~Widget() = default;

  const Control& control() const { return control_; }
  HWND window() const { return window_; }

  /// Makes the window, not to be seen yet. Failure 7 when the system has no room for it.
  void Create(HWND parent, int id, const Metrics& metrics);
  virtual void SetMetrics(const Metrics& metrics);
  /// Pixels that it needs.
  virtual Extent Least(const Metrics& metrics) const = 0;
  /// Shows it or not, and whether it takes what the user does.
  void SetState(bool shown, bool enabled);
  bool IsShown() const { return shown_; }
  /// Shows what the control says now. True when it may need other room than before.
  bool Refresh();

  /// `code` is that of the window's WM_COMMAND. True when the form was told of something.
  virtual bool OnCommand(Form&, int /*code*/) { return false; }
  virtual void OnNotify(NMHDR&) {}
  virtual void Paint(const DRAWITEMSTRUCT&) const {}
  /// What a screen reader reads out besides the name; "": what the system finds itself.
  virtual std::string SpokenValue() const { return {}; }
  /// The height of the window where it differs from the room that it takes.
  virtual int WindowHeight(int room) const { return room; }

 protected:
  struct Kind {
    const wchar_t* window_class;
    DWORD style;
    DWORD extended_style = 0;
  };
  virtual Kind WindowKind() const = 0;
  /// Whether the form does.
  bool BeginsFromRight() const { return begins_from_right_; }
  /// The text as it is given to the system, see `ReadByItself`.
  std::wstring Drawn(const std::string& text) const;
  virtual void Created() {}
  /// The control's own part of `Refresh`.
  virtual void Write() {}

  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return ::SendMessageW(window_, message, wparam, lparam);
  }
  /// A command of the control to its parent.
  void SendCommand(WORD code) const;
  void PostCommand(WORD code) const;
  Control& control_;

 private:
  WPARAM Command(WORD code) const;

  HWND window_ = nullptr;
  std::string caption_;  ///< as shown
  bool error_ = false;   ///< as shown
  bool dimmed_ = false;  ///< as shown
  bool shown_ = false;
  bool begins_from_right_ = false;
};

/// For every type but menus.
std::unique_ptr<Widget> MakeWidget(Control& control);

}  // namespace vok::windows
