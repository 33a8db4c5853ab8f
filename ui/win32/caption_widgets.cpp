// What consists of a caption: labels, frames, buttons, check boxes.
#include <algorithm>

#include "ui/win32/widgets.h"
// after the system's own header
#include <shellapi.h>

namespace vok::windows {
namespace {

class LabelWidget : public Widget {
 public:
  using Widget::Widget;
  Extent Least(const Metrics& metrics) const override {
    const std::wstring caption = Drawn(control_.Caption);
    const int width =
        control_.Width > 0 ? metrics.Letters(control_.Width) : metrics.WidthOf(caption);
    const int height = control_.Grows ? metrics.HeightOf(caption, width) : metrics.Lines(1);
    return {width, height + metrics.Pixels(2)};
  }

 private:
  Kind WindowKind() const override {
    const DWORD lines = control_.Grows ? SS_EDITCONTROL : SS_CENTERIMAGE | SS_ENDELLIPSIS;
    return {L"STATIC", SS_LEFT | lines};
  }
};

/// Without a caption it is a grid of its own and nothing to be seen.
class FrameWidget : public Widget {
 public:
  using Widget::Widget;
  Extent Least(const Metrics&) const override { return {}; }

 private:
  Kind WindowKind() const override {
    if (control_.Caption.empty()) return {L"STATIC", SS_LEFT};
    return {L"BUTTON", BS_GROUPBOX};
  }
};

class ButtonWidget : public Widget {
 public:
  using Widget::Widget;
  ~ButtonWidget() override {
    if (picture_ != nullptr) ::DestroyIcon(picture_);
  }
  Extent Least(const Metrics& metrics) const override {
    if (!control_.Symbol.empty()) return {metrics.Across(16), metrics.Down(13)};
    const int usual = metrics.Across(50);
    const int picture = picture_ != nullptr ? ::GetSystemMetrics(SM_CXSMICON) : 0;
    const int caption = metrics.WidthOf(Drawn(control_.Caption)) + picture + metrics.Across(12);
    return {std::max({usual, caption, metrics.Letters(control_.Width)}), metrics.Down(14)};
  }
  bool OnCommand(Form& form, int code) override {
    if (code != BN_CLICKED) return false;
    form.Click(control_.Id());
    return true;
  }

 private:
  Kind WindowKind() const override {
    return {L"BUTTON", WS_TABSTOP | static_cast<DWORD>(control_.Default ? BS_DEFPUSHBUTTON : 0)};
  }
  void Created() override {
    if (!control_.Destructive) return;
    SHSTOCKICONINFO bin{};
    bin.cbSize = sizeof bin;
    if (FAILED(::SHGetStockIconInfo(SIID_RECYCLER, SHGSI_ICON | SHGSI_SMALLICON, &bin))) return;
    picture_ = bin.hIcon;
    Send(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(picture_));
  }

  HICON picture_ = nullptr;
};

class CheckBoxWidget : public Widget {
 public:
  using Widget::Widget;
  Extent Least(const Metrics& metrics) const override {
    const int box = metrics.Pixels(17);
    const std::wstring caption = Drawn(control_.Caption);
    return {caption.empty() ? box : box + metrics.WidthOf(caption) + metrics.Across(4),
            metrics.Down(12)};
  }
  bool OnCommand(Form& form, int code) override {
    if (code != BN_CLICKED) return false;
    form.Click(control_.Id());
    return true;
  }

 private:
  Kind WindowKind() const override { return {L"BUTTON", WS_TABSTOP | BS_3STATE}; }
  void Write() override {
    static_assert(kChecked == BST_CHECKED && kGrayed == BST_INDETERMINATE);
    const auto value = static_cast<WPARAM>(control_.Value);
    if (static_cast<WPARAM>(Send(BM_GETCHECK)) != value) Send(BM_SETCHECK, value);
  }
};

}  // namespace

std::unique_ptr<Widget> MakeLabel(Control& control) {
  return std::make_unique<LabelWidget>(control);
}
std::unique_ptr<Widget> MakeFrame(Control& control) {
  return std::make_unique<FrameWidget>(control);
}
std::unique_ptr<Widget> MakeButton(Control& control) {
  return std::make_unique<ButtonWidget>(control);
}
std::unique_ptr<Widget> MakeCheckBox(Control& control) {
  return std::make_unique<CheckBoxWidget>(control);
}

}  // namespace vok::windows
