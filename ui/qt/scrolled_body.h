// What of a window scrolls: its body and, beside or below it, what a form has there.
#pragma once

#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSplitter>

namespace vok::qt {

class ScrolledBody : public QScrollArea {
 public:
  explicit ScrolledBody(QWidget& window);

  QWidget& body() const { return *body_; }
  QWidget& beside() const { return *beside_; }
  void ShowBeside(bool shown);
  /// Scrolls to the widget as soon as it has its place; what is below the body for want of room
  /// comes into sight from its beginning.
  void Reveal(QWidget& widget);

  /// Where the splitter stands, to be kept for the next time.
  QByteArray Split() const { return split_; }
  void SetSplit(const QByteArray& split) { split_ = split; }

  /// With all that is shown side by side.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void Arrange();
  void RestoreSplit();
  void ScrollTo(QWidget& widget);
  int WidthSideBySide() const;

  QSplitter* splitter_;
  QWidget* body_;
  QWidget* beside_;
  QByteArray split_;
};

}  // namespace vok::qt
