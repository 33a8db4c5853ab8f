#include "ui/qt/appearance.h"

#include <QtGui/QFontDatabase>
#include <QtGui/QTextDocument>
#include <QtWidgets/QApplication>

#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/qt/control_view.h"

namespace vok::qt {
namespace {

/// Texts keep their colour on it, be they dark or bright.
QColor ErrorBack(const QPalette& palette) {
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  return dark ? QColor(0x6b, 0x20, 0x20) : QColor(0xff, 0xd0, 0xd0);
}

}  // namespace

QFont FontOf(const Font& font) {
  if (!QFontDatabase::hasFamily(Text(font.Name))) return QApplication::font();
  QFont named(Text(font.Name));
  named.setPointSizeF(font.Size);
  return named;
}

QString PlainToolTip(const std::string& text) {
  const QString tip = Text(text);
  return Qt::mightBeRichText(tip) ? tip.toHtmlEscaped() : tip;
}

void MarkState(QWidget& widget, const Control& control) {
  const QPalette usual = QApplication::palette(&widget);
  const bool locked = control.Locked && control.Type == ControlType::kTextBox;
  const QColor back =
      control.Error ? ErrorBack(usual) : usual.color(locked ? QPalette::Window : QPalette::Base);
  const bool dimmed = control.Dimmed && !control.Error;
  const QColor text = usual.color(dimmed ? QPalette::PlaceholderText : QPalette::Text);
  const auto now = [&](QPalette::ColorRole role) {
    return widget.palette().color(QPalette::Active, role);
  };
  if (now(QPalette::Base) != back || now(QPalette::Text) != text) {
    QPalette marked;
    if (control.Error || locked) marked.setColor(QPalette::Base, back);
    if (dimmed) marked.setColor(QPalette::Text, text);
    widget.setPalette(marked);
  }
  QStringList spoken;
  if (control.Error) spoken.append(Text(StringTableText(text_number::kError)));
  if (!control.ToolTipText.empty()) spoken.append(Text(control.ToolTipText));
  const QString description = spoken.join(QStringLiteral(". "));
  if (widget.accessibleDescription() != description) widget.setAccessibleDescription(description);
}

}  // namespace vok::qt
