// What is chosen from a list: combo boxes and list boxes.
#include <algorithm>
#include <utility>

#include "system/windows/utf16.h"
#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

constexpr int kUsualLetters = 10;

/// Whether choosing this entry would say something new.
bool IsNews(const Control& control, int position) {
  if (position < 0 || position >= static_cast<int>(control.List.size())) return false;
  return position != control.ListIndex ||
         control.List[static_cast<std::size_t>(position)] != control.Text;
}

int PositionOfText(const Control& control) {
  const auto found = std::find(control.List.begin(), control.List.end(), control.Text);
  return found == control.List.end() ? -1 : static_cast<int>(found - control.List.begin());
}

class ComboBoxWidget : public Widget {
 public:
  using Widget::Widget;

  void SetMetrics(const Metrics& metrics) override {
    metrics_ = &metrics;
    Widget::SetMetrics(metrics);
    constexpr WPARAM kClosedPart = static_cast<WPARAM>(-1);
    Send(CB_SETITEMHEIGHT, kClosedPart, metrics.Down(13) - metrics.Pixels(6));
    Widen();
  }
  Extent Least(const Metrics& metrics) const override {
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    return {metrics.Letters(letters) + Edges(), metrics.Down(13)};
  }
  int WindowHeight(int room) const override {
    constexpr int kMostLines = 12;
    return room + metrics_->Lines(kMostLines);
  }

  /// An entry counts as chosen when the list is closed again, and not before the window has done
  /// with it: it writes the entry's text after telling of it.
  bool OnCommand(Form& form, int code) override {
    switch (code) {
      case CBN_EDITCHANGE:
        form.Type(control_.Id(), Utf8(TextOf(window())));
        return true;
      case CBN_KILLFOCUS:  // no mark on a text that does not have the focus
        Send(CB_SETEDITSEL, 0, MAKELPARAM(0, 0));
        return false;
      case CBN_DROPDOWN:
      case CBN_SELENDOK:
      case CBN_SELENDCANCEL:
        given_up_ = code == CBN_SELENDCANCEL;
        return false;
      case CBN_SELCHANGE:
      case CBN_CLOSEUP:
        if (!std::exchange(awaited_, true)) PostCommand(kClosed);
        return false;
      case kClosed:
        awaited_ = false;
        TakeChoice(form);
        return true;
      default:
        return false;
    }
  }

 private:
  static constexpr WORD kClosed = 0x7F00;  // none of the system's codes

  Kind WindowKind() const override {
    const DWORD style = control_.Locked ? CBS_DROPDOWNLIST : CBS_DROPDOWN | CBS_AUTOHSCROLL;
    return {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | style};
  }
  int Edges() const { return metrics_->Across(6) + ::GetSystemMetrics(SM_CXVSCROLL); }

  void TakeChoice(Form& form) {
    if (Send(CB_GETDROPPEDSTATE) != FALSE || std::exchange(given_up_, false)) return;
    const auto chosen = static_cast<int>(Send(CB_GETCURSEL));
    if (IsNews(control_, chosen)) form.Choose(control_.Id(), chosen);
  }

  void Write() override {
    if (awaited_ || Send(CB_GETDROPPEDSTATE) != FALSE) return;
    if (shown_list_ != control_.List) WriteList();
    if (control_.Locked) {
      const int position = PositionOfText(control_);
      if (Send(CB_GETCURSEL) != position) Send(CB_SETCURSEL, static_cast<WPARAM>(position));
      return;
    }
    const std::wstring wanted = Utf16(control_.Text);
    if (wanted != TextOf(window())) ::SetWindowTextW(window(), wanted.c_str());
  }

  void WriteList() {
    shown_list_ = control_.List;
    Send(CB_RESETCONTENT);
    for (const std::string& entry : shown_list_) {
      Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Utf16(entry).c_str()));
    }
    Widen();
  }

  /// Makes the list wide enough for its entries.
  void Widen() const {
    int widest = 0;
    for (const std::string& entry : shown_list_) {
      widest = std::max(widest, metrics_->WidthOf(Utf16(entry)));
    }
    Send(CB_SETDROPPEDWIDTH, static_cast<WPARAM>(widest + Edges()));
  }

  const Metrics* metrics_ = nullptr;
  std::vector<std::string> shown_list_;
  bool awaited_ = false;   ///< the list was closed, `kClosed` is on its way
  bool given_up_ = false;  ///< it was closed without a choice
};

class ListBoxWidget : public Widget {
 public:
  using Widget::Widget;

  Extent Least(const Metrics& metrics) const override {
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    return {metrics.Letters(letters) + metrics.Across(6) + ::GetSystemMetrics(SM_CXVSCROLL),
            metrics.Lines(control_.Height) + metrics.Pixels(6)};
  }
  bool OnCommand(Form& form, int code) override {
    const auto chosen = static_cast<int>(Send(LB_GETCURSEL));
    if (code != LBN_SELCHANGE || !IsNews(control_, chosen)) return false;
    shown_position_ = chosen;
    form.Choose(control_.Id(), chosen);
    return true;
  }

 private:
  Kind WindowKind() const override {
    return {L"LISTBOX", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
            WS_EX_CLIENTEDGE};
  }
  void Write() override {
    if (shown_list_ != control_.List) {
      shown_list_ = control_.List;
      shown_position_ = -1;
      Send(LB_RESETCONTENT);
      for (const std::string& entry : shown_list_) {
        Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Utf16(entry).c_str()));
      }
    }
    // Not what the window says: a mouse that is down has marked an entry, and chosen none yet.
    if (shown_position_ == control_.ListIndex) return;
    shown_position_ = control_.ListIndex;
    Send(LB_SETCURSEL, static_cast<WPARAM>(shown_position_));
  }

  std::vector<std::string> shown_list_;
  int shown_position_ = -1;
};

}  // namespace

std::unique_ptr<Widget> MakeComboBox(Control& control) {
  return std::make_unique<ComboBoxWidget>(control);
}
std::unique_ptr<Widget> MakeListBox(Control& control) {
  return std::make_unique<ListBoxWidget>(control);
}

}  // namespace vok::windows
