// Progress bars, tab strips, tool bars.
#include <algorithm>

#include "system/windows/utf16.h"
#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

class ProgressBarWidget : public Widget {
 public:
  using Widget::Widget;
  Extent Least(const Metrics& metrics) const override {
    constexpr int kUsualLetters = 20;
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    return {metrics.Letters(letters), metrics.Down(10)};
  }

 private:
  Kind WindowKind() const override { return {PROGRESS_CLASSW, PBS_MARQUEE}; }
  void Write() override {
    if (moves_ == IsShown()) return;
    moves_ = IsShown();
    constexpr LPARAM kMilliseconds = 30;
    Send(PBM_SETMARQUEE, moves_ ? TRUE : FALSE, kMilliseconds);
  }

  bool moves_ = false;
};

/// Has a title for each of its items, side by side; one of them being clicked clicks the control.
class TitlesWidget : public Widget {
 public:
  using Widget::Widget;
  Extent Least(const Metrics& metrics) const override {
    int width = 0;
    for (const ControlItem& item : control_.Items) {
      width += metrics.WidthOf(Utf16(TitleOf(item))) + metrics.Across(14);
    }
    return {width, metrics.Down(16)};
  }
  bool OnCommand(Form& form, int code) override {
    if (code != BN_CLICKED) return false;
    form.Click(control_.Id());
    return true;
  }

 protected:
  static std::string TitleOf(const ControlItem& item) {
    return item.Caption.empty() ? item.ToolTipText : item.Caption;
  }
  virtual void Add(std::size_t position, std::wstring title) = 0;
  virtual void Clear() = 0;

 private:
  void Write() override {
    const auto& items = control_.Items;
    if (std::equal(titles_.begin(), titles_.end(), items.begin(), items.end(),
                   [](const std::string& shown, const ControlItem& item) {
                     return shown == TitleOf(item);
                   })) {
      return;
    }
    Clear();
    titles_.clear();
    for (const ControlItem& item : items) {
      Add(titles_.size(), Utf16(TitleOf(item)));
      titles_.push_back(TitleOf(item));
    }
  }

  std::vector<std::string> titles_;  ///< as shown
};

class TabStripWidget : public TitlesWidget {
 public:
  using TitlesWidget::TitlesWidget;
  void OnNotify(NMHDR& header) override {
    if (header.code == TCN_SELCHANGE) SendCommand(BN_CLICKED);
  }

 private:
  Kind WindowKind() const override { return {WC_TABCONTROLW, WS_TABSTOP}; }
  void Clear() override { Send(TCM_DELETEALLITEMS); }
  void Add(std::size_t position, std::wstring title) override {
    TCITEMW tab{};
    tab.mask = TCIF_TEXT;
    tab.pszText = title.data();
    Send(TCM_INSERTITEMW, position, reinterpret_cast<LPARAM>(&tab));
  }
};

class ToolbarWidget : public TitlesWidget {
 public:
  using TitlesWidget::TitlesWidget;

 private:
  Kind WindowKind() const override {
    return {TOOLBARCLASSNAMEW,
            TBSTYLE_FLAT | TBSTYLE_LIST | CCS_NOPARENTALIGN | CCS_NODIVIDER | CCS_NORESIZE};
  }
  void Created() override {
    Send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    Send(TB_SETBITMAPSIZE, 0, 0);
  }
  void Clear() override {
    while (Send(TB_DELETEBUTTON) != FALSE) continue;
  }
  void Add(std::size_t, std::wstring title) override {
    TBBUTTON button{};
    button.iBitmap = I_IMAGENONE;
    button.idCommand = ::GetDlgCtrlID(window());
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = BTNS_AUTOSIZE | BTNS_SHOWTEXT;
    button.iString = reinterpret_cast<INT_PTR>(title.c_str());
    Send(TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
  }
};

}  // namespace

std::unique_ptr<Widget> MakeProgressBar(Control& control) {
  return std::make_unique<ProgressBarWidget>(control);
}
std::unique_ptr<Widget> MakeTabStrip(Control& control) {
  return std::make_unique<TabStripWidget>(control);
}
std::unique_ptr<Widget> MakeToolbar(Control& control) {
  return std::make_unique<ToolbarWidget>(control);
}

}  // namespace vok::windows
