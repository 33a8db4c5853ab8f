// A chart: in each line a caption, a bar from the common zero line and the value's text, or a
// title.
#include <QtGui/QPainter>
#include <QtWidgets/QScrollArea>
#include <algorithm>
#include <cmath>

#include "ui/qt/control_view.h"
#include "ui/qt/sized.h"

namespace vok::qt {
namespace {

constexpr int kGap = 8;             // pixels between captions, bars and values
constexpr double kLinesPerBar = 1;  // least height
constexpr double kMostLines = 2.5;
constexpr double kBarOfLine = 0.6;  // of a line's height, the rest is space

double Length(const Bar& bar) { return std::isfinite(bar.value) ? bar.value : 0; }

class Bars : public QWidget {
 public:
  using QWidget::QWidget;

  void Show(const std::vector<Bar>& bars) {
    if (bars == bars_) return;
    bars_ = bars;
    setMinimumHeight(
        static_cast<int>(std::ceil(static_cast<double>(bars.size()) * kLinesPerBar * Line())));
    setAccessibleDescription(Spoken());
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    if (bars_.empty()) return;
    QPainter painter(this);
    const Columns columns = Measure();
    const double height =
        std::min(this->height() / static_cast<double>(bars_.size()), kMostLines * Line());
    double top = 0;
    for (const Bar& bar : bars_) {
      const QRectF line(0, top, width(), height);
      bar.title ? PaintText(painter, line, bar.caption) : Paint(painter, bar, columns, line);
      top += height;
    }
    painter.setPen(palette().color(QPalette::Mid));
    const double zero = Mirrored({columns.zero, 0, 0, 0}).left();
    painter.drawLine(QPointF(zero, 0), QPointF(zero, top));
  }

 private:
  /// Where things stand, in pixels in reading direction.
  struct Columns {
    double captions;  ///< width
    double values;    ///< width, at the end
    double zero;      ///< position of the zero line
    double scale;     ///< pixels per unit of value
  };

  double WidthOf(const std::string& text) const {
    return QFontMetricsF(font()).horizontalAdvance(Text(text));
  }
  double Line() const { return fontMetrics().lineSpacing(); }

  Columns Measure() const {
    double captions = 0, values = 0, least = 0, most = 0;
    for (const Bar& bar : bars_) {
      if (bar.title) continue;
      captions = std::max(captions, WidthOf(bar.caption));
      values = std::max(values, WidthOf(bar.value_text));
      least = std::min(least, Length(bar));
      most = std::max(most, Length(bar));
    }
    captions = std::min(captions, width() / 3.0);
    const double room = std::max(0.0, width() - captions - values - 2 * kGap);
    const double scale = most > least ? room / (most - least) : 0;
    return {captions, values, captions + kGap - least * scale, scale};
  }

  /// At the start of the room.
  void PaintText(QPainter& painter, const QRectF& room, const std::string& text) const {
    painter.setPen(palette().color(QPalette::WindowText));
    const int start = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    const QString cut =
        QFontMetricsF(font()).elidedText(Text(text), Qt::ElideRight, std::ceil(room.width()) + 1);
    painter.drawText(Mirrored(room), start | Qt::AlignVCenter, cut);
  }

  void Paint(QPainter& painter, const Bar& bar, const Columns& columns, const QRectF& line) const {
    PaintText(painter, {0, line.top(), columns.captions, line.height()}, bar.caption);
    const int end = isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight;
    const QRectF value(line.width() - columns.values, line.top(), columns.values, line.height());
    painter.drawText(Mirrored(value), end | Qt::AlignVCenter, Text(bar.value_text));

    const double length = Length(bar) * columns.scale;
    const QRectF shape(std::min(columns.zero, columns.zero + length),
                       line.top() + line.height() * (1 - kBarOfLine) / 2, std::abs(length),
                       line.height() * kBarOfLine);
    painter.fillRect(Mirrored(shape), palette().color(QPalette::Highlight));
  }

  QRectF Mirrored(QRectF box) const {
    if (isRightToLeft()) box.moveLeft(width() - box.right());
    return box;
  }

  QString Spoken() const {
    QStringList lines;
    for (const Bar& bar : bars_) {
      lines.append(Text(bar.title ? bar.caption : bar.caption + ": " + bar.value_text));
    }
    return lines.join(QStringLiteral("; "));
  }

  std::vector<Bar> bars_;
};

/// Its area has room for all bars.
class Chart : public ControlView {
 public:
  Chart(const Control& control, Sized<QScrollArea>& area)
      : ControlView(area), area_(area), bars_(new Bars(&area)) {
    area.setWidget(bars_);
    area.setWidgetResizable(true);
    area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area.setFrameShape(QFrame::NoFrame);
    area.setFocusPolicy(Qt::NoFocus);  // there is nothing to be done in it
    area.viewport()->setAutoFillBackground(false);
    bars_->setAutoFillBackground(false);
    area.setMinimumWidth(TextWidth(control, area));
  }
  void Draw(const Control& control) override {
    bars_->Show(control.Bars);
    area_.setMinimumHeight(std::max(TextHeight(control, area_), bars_->minimumHeight()));
  }

 private:
  Sized<QScrollArea>& area_;
  Bars* bars_;
};

}  // namespace

std::unique_ptr<ControlView> NewChart(const Control& control, QWidget& parent) {
  return std::make_unique<Chart>(control, *new Sized<QScrollArea>(&parent));
}

}  // namespace vok::qt
