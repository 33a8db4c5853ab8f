#include "system/windows/utf16.h"
#include "ui/win32/calendar.h"
#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

class TextBoxWidget : public Widget {
 public:
  using Widget::Widget;
  /// The window may live on for a moment.
  ~TextBoxWidget() override {
    ::RemoveWindowSubclass(window(), Keys, 0);
    ::RemoveWindowSubclass(window(), Ends, 0);
  }
  Extent Least(const Metrics& metrics) const override {
    constexpr int kUsualLetters = 10;
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    return {metrics.Letters(letters) + metrics.Across(6),
            metrics.Down(13) + metrics.Lines(control_.Height - 1)};
  }
  bool OnCommand(Form& form, int code) override {
    if (code == kCalendar) return TakeDate(form);
    if (code != EN_CHANGE) return false;
    form.Type(control_.Id(), Utf8(TextOf(window())));
    return true;
  }

 private:
  static constexpr WORD kCalendar = 0x7F00;  // none of the system's codes

  void SetMetrics(const Metrics& metrics) override {
    metrics_ = &metrics;
    Widget::SetMetrics(metrics);
  }

  bool TakeDate(Form& form) {
    const auto picked = PickDate(window(), form.Dates.read(control_.Text));
    if (picked) form.Type(control_.Id(), form.Dates.write(*picked));
    return picked.has_value();
  }

  /// F4, Alt+Down and a double click open the calendar of a field for dates.
  static LRESULT CALLBACK Keys(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR id,
                               DWORD_PTR self) {
    const bool opens = (message == WM_KEYDOWN && wparam == VK_F4) ||
                       (message == WM_SYSKEYDOWN && wparam == VK_DOWN) ||
                       message == WM_LBUTTONDBLCLK;
    if (opens) {
      reinterpret_cast<TextBoxWidget*>(self)->PostCommand(kCalendar);
      return 0;
    }
    if (message == WM_NCDESTROY) ::RemoveWindowSubclass(window, Keys, id);
    return ::DefSubclassProc(window, message, wparam, lparam);
  }

  /// Without the focus a path that is too long is drawn with its beginning and its end.
  static LRESULT CALLBACK Ends(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR id,
                               DWORD_PTR self) {
    if (message == WM_PAINT && reinterpret_cast<TextBoxWidget*>(self)->PaintEnds()) return 0;
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
      ::InvalidateRect(window, nullptr, TRUE);
    }
    if (message == WM_NCDESTROY) ::RemoveWindowSubclass(window, Ends, id);
    return ::DefSubclassProc(window, message, wparam, lparam);
  }

  /// False where all of the text can be seen or typed into: the system draws that.
  bool PaintEnds() const {
    RECT room{}, whole{};
    Send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    const std::wstring text = TextOf(window());
    const std::wstring ends = metrics_->Shortened(text, static_cast<int>(room.right - room.left));
    if (::GetFocus() == window() || ends == text) return false;
    PAINTSTRUCT paint{};
    const HDC canvas = ::BeginPaint(window(), &paint);
    ::GetClientRect(window(), &whole);
    ::FillRect(canvas, &whole, Colours(canvas));
    const HGDIOBJ before = ::SelectObject(canvas, metrics_->font());
    ::DrawTextW(canvas, ends.c_str(), -1, &room, DT_SINGLELINE | DT_NOPREFIX);
    ::SelectObject(canvas, before);
    ::EndPaint(window(), &paint);
    return true;
  }

  /// As the system would ask for them. Returns what is around the text.
  HBRUSH Colours(HDC canvas) const {
    const bool plain = !control_.Locked && ::IsWindowEnabled(window()) != FALSE;
    return reinterpret_cast<HBRUSH>(
        ::SendMessageW(::GetParent(window()), plain ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC,
                       reinterpret_cast<WPARAM>(canvas), reinterpret_cast<LPARAM>(window())));
  }

  Kind WindowKind() const override {
    const DWORD lines = control_.Height > 1 ? ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL : 0;
    const DWORD side = BeginsFromRight() ? ES_RIGHT : ES_LEFT;
    // The Tab key does not stop at a text that can only be read.
    const DWORD stop = control_.Locked ? 0 : WS_TABSTOP;
    return {L"EDIT", stop | ES_AUTOHSCROLL | side | lines, WS_EX_CLIENTEDGE};
  }

  /// Dates, paths and names of cubes are read from the left in every language; where windows begin
  /// from the right they are set flush there all the same.
  void Created() override {
    if (control_.IsDate) {
      ::SetWindowSubclass(window(), Keys, 0, reinterpret_cast<DWORD_PTR>(this));
    }
    if (control_.Path) {
      ::SetWindowSubclass(window(), Ends, 0, reinterpret_cast<DWORD_PTR>(this));
    }
    if (!BeginsFromRight()) return;
    constexpr LONG_PTR kFromRight = WS_EX_LAYOUTRTL | WS_EX_RTLREADING | WS_EX_LEFTSCROLLBAR;
    const LONG_PTR style = ::GetWindowLongPtrW(window(), GWL_EXSTYLE);
    ::SetWindowLongPtrW(window(), GWL_EXSTYLE, (style & ~kFromRight) | WS_EX_RIGHT);
  }

  void Write() override {
    const bool locked = (::GetWindowLongPtrW(window(), GWL_STYLE) & ES_READONLY) != 0;
    if (locked != control_.Locked) Send(EM_SETREADONLY, control_.Locked ? TRUE : FALSE);
    const std::wstring wanted = Utf16(control_.Text);
    if (wanted == TextOf(window())) return;
    ::SetWindowTextW(window(), wanted.c_str());
    if (::GetFocus() == window())
      Send(EM_SETSEL, wanted.size(), static_cast<LPARAM>(wanted.size()));
  }

  const Metrics* metrics_ = nullptr;
};

}  // namespace

std::unique_ptr<Widget> MakeTextBox(Control& control) {
  return std::make_unique<TextBoxWidget>(control);
}

}  // namespace vok::windows
