#include "ui/qt/appearance.h"

#include <QtGui/QFontDatabase>
#include <QtGui/QTextDocument>
#include <QtWidgets/QApplication>

#include "env/string_table.h"
#include "env/text_numbers.h"
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

void MarkError(QWidget& widget, const Control& control) {
  const QColor back = ErrorBack(QApplication::palette());
  const bool marked = widget.testAttribute(Qt::WA_SetPalette);
  if (control.Error && !marked) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Base, back);
    widget.setPalette(palette);
  } else if (!control.Error && marked) {
    widget.setPalette({});
  }
  QStringList spoken;
  if (control.Error) spoken.append(Text(StringTableText(text_number::kError)));
  if (!control.ToolTipText.empty()) spoken.append(Text(control.ToolTipText));
  const QString description = spoken.join(QStringLiteral(". "));
  if (widget.accessibleDescription() != description) widget.setAccessibleDescription(description);
}

}  // namespace vok::qt
