#include <algorithm>
#include <cmath>

#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

/// Captions at the start of the line, then the bars on both sides of the zero line, each with its
/// value after its end; titles on lines of their own.
class ChartWidget : public Widget {
 public:
  using Widget::Widget;

  void SetMetrics(const Metrics& metrics) override {
    metrics_ = &metrics;
    Widget::SetMetrics(metrics);
  }
  Extent Least(const Metrics& metrics) const override {
    constexpr int kUsualLetters = 40;
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    const int lines = std::max(control_.Height, static_cast<int>(control_.Bars.size()));
    return {metrics.Letters(letters), lines * LineHeight(metrics) + metrics.Pixels(8)};
  }
  std::string SpokenValue() const override {
    std::string spoken;
    for (const Bar& bar : control_.Bars) {
      spoken += bar.caption + (bar.title ? "; " : ": " + bar.value_text + "; ");
    }
    return spoken;
  }

  void Paint(const DRAWITEMSTRUCT& item) const override {
    ::FillRect(item.hDC, &item.rcItem, ::GetSysColorBrush(COLOR_WINDOW));
    if (shown_.empty()) return;
    const HGDIOBJ before = ::SelectObject(item.hDC, metrics_->font());
    ::SetBkMode(item.hDC, TRANSPARENT);
    ::SetTextColor(item.hDC, ::GetSysColor(COLOR_WINDOWTEXT));
    PaintBars(item.hDC, item.rcItem);
    ::SelectObject(item.hDC, before);
  }

 private:
  /// Where things stand, in pixels from the left.
  struct Scale {
    int captions = 0;
    int zero = 0;
    double per_unit = 0;
  };

  Kind WindowKind() const override { return {L"STATIC", SS_OWNERDRAW, WS_EX_CLIENTEDGE}; }
  void Write() override {
    if (shown_ == control_.Bars) return;
    shown_ = control_.Bars;
    ::InvalidateRect(window(), nullptr, TRUE);
  }
  static int LineHeight(const Metrics& metrics) { return metrics.Down(11); }

  int WidthOf(const std::string& text) const { return metrics_->WidthOf(Drawn(text)); }

  Scale ScaleFor(const RECT& area) const {
    double least = 0, most = 0;
    int captions = 0, before = 0, behind = 0;  // the widest texts
    for (const Bar& bar : shown_) {
      if (bar.title) continue;
      captions = std::max(captions, WidthOf(bar.caption));
      int& value_text = bar.value < 0 ? before : behind;
      value_text = std::max(value_text, WidthOf(bar.value_text));
      if (!std::isfinite(bar.value)) continue;
      least = std::min(least, bar.value);
      most = std::max(most, bar.value);
    }
    const int gap = metrics_->Across(4);
    captions += area.left + gap;
    before += before > 0 ? 2 * gap : gap;
    behind += 2 * gap;
    const int room = std::max(0, static_cast<int>(area.right) - captions - before - behind);
    Scale scale{captions, captions + before, 0};
    if (most > least) scale.per_unit = room / (most - least);
    scale.zero += static_cast<int>(std::lround(-least * scale.per_unit));
    return scale;
  }

  void PaintBars(HDC canvas, const RECT& area) const {
    const Scale scale = ScaleFor(area);
    const int height = static_cast<int>(area.bottom - area.top) - metrics_->Pixels(8);
    const int line = std::min(height / static_cast<int>(shown_.size()), 2 * LineHeight(*metrics_));
    int top = area.top + metrics_->Pixels(4);
    for (const Bar& bar : shown_) {
      PaintBar(canvas, {area.left, top, area.right, top + line}, bar, scale);
      top += line;
    }
    const RECT axis{scale.zero, area.top + metrics_->Pixels(4), scale.zero + metrics_->Pixels(1),
                    top};
    ::FillRect(canvas, &axis, ::GetSysColorBrush(COLOR_GRAYTEXT));
  }

  void PaintBar(HDC canvas, const RECT& line, const Bar& bar, const Scale& scale) const {
    const int gap = metrics_->Across(4);
    const RECT caption{line.left + gap, line.top, bar.title ? line.right : scale.captions,
                       line.bottom};
    WriteText(canvas, caption, bar.caption, DT_LEFT | DT_END_ELLIPSIS);
    if (bar.title) return;
    const double value = std::isfinite(bar.value) ? bar.value : 0;
    const int length = static_cast<int>(std::lround(value * scale.per_unit));
    const int edge = static_cast<int>(line.bottom - line.top) / 6;
    const RECT body{scale.zero + std::min(length, 0), line.top + edge,
                    scale.zero + std::max(length, 0), line.bottom - edge};
    ::FillRect(canvas, &body, ::GetSysColorBrush(COLOR_HIGHLIGHT));
    if (value < 0) {
      WriteText(canvas, {scale.captions, line.top, body.left - gap, line.bottom}, bar.value_text,
                DT_RIGHT);
    } else {
      WriteText(canvas, {body.right + gap, line.top, line.right, line.bottom}, bar.value_text,
                DT_LEFT);
    }
  }

  void WriteText(HDC canvas, RECT area, const std::string& text, UINT side) const {
    ::DrawTextW(canvas, Drawn(text).c_str(), -1, &area,
                side | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_NOCLIP);
  }

  const Metrics* metrics_ = nullptr;
  std::vector<Bar> shown_;
};

}  // namespace

std::unique_ptr<Widget> MakeChart(Control& control) {
  return std::make_unique<ChartWidget>(control);
}

}  // namespace vok::windows
