#include "ui/qt/application.h"

#include <QtCore/QLibrary>
#include <QtCore/QLibraryInfo>
#include <QtCore/QThread>
#include <QtCore/QTranslator>
#include <QtGui/QFontDatabase>
#include <QtGui/QTextDocument>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QStyleOptionButton>
#include <clocale>
#include <string>

#include "platform/failure.h"
#include "ui/qt/control_view.h"

namespace vok::qt {
namespace {

constexpr QLatin1String kUsualStyle("fusion");

Failure NoWindows(const std::string& why) {
  return Failure(failure_number::kNotSupported, "No window can be shown: " + why);
}

/// Whether an X server answers at $DISPLAY. True where nobody can be asked.
bool DisplayAnswers() {
  QLibrary xcb(QStringLiteral("xcb"), 1);
  const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(xcb.resolve("xcb_connect"));
  const auto failed = reinterpret_cast<int (*)(void*)>(xcb.resolve("xcb_connection_has_error"));
  const auto disconnect = reinterpret_cast<void (*)(void*)>(xcb.resolve("xcb_disconnect"));
  if (connect == nullptr || failed == nullptr || disconnect == nullptr) return true;
  void* connection = connect(nullptr, nullptr);
  const bool answers = failed(connection) == 0;
  disconnect(connection);
  return answers;
}

/// Qt ends the process where it finds no screen, so it is looked for before.
void NeedScreen() {
  if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) return;
  if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return;
  if (qEnvironmentVariableIsEmpty("DISPLAY")) {
    throw NoWindows(
        "neither DISPLAY nor WAYLAND_DISPLAY names a screen. Log in to a desktop, or connect with "
        "ssh -X");
  }
  if (!DisplayAnswers()) {
    throw NoWindows("no screen answers at DISPLAY=" + qgetenv("DISPLAY").toStdString() +
                    ", or it refuses this user");
  }
}

/// The texts of Qt's own buttons and dialogs, where the desktop has them in the person's language.
void TranslateQt(QApplication& application) {
  auto* texts = new QTranslator(&application);
  if (texts->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(texts);
  }
}

/// The host program's C locale stays as it is; Qt would set the environment's.
void MakeApplication() {
  static int count = 1;
  static char name[] = "VokCubeQ17";
  static char* arguments[] = {name, nullptr};
  const std::string before = std::setlocale(LC_ALL, nullptr);
  auto* application = new QApplication(count, arguments);
  std::setlocale(LC_ALL, before.c_str());
  QApplication::setQuitOnLastWindowClosed(false);
  TranslateQt(*application);
}

/// The style that Qt has where the desktop has none draws edges darker than the window; on a dark
/// one nobody would see them. This draws those of check boxes brighter.
class BrightEdges : public QProxyStyle {
 public:
  BrightEdges() : QProxyStyle(kUsualStyle) {}
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != PE_IndicatorCheckBox || box == nullptr) {
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    QStyleOptionButton brighter = *box;
    brighter.palette.setColor(QPalette::Window, box->palette.color(QPalette::WindowText));
    QProxyStyle::drawPrimitive(element, &brighter, painter, widget);
  }
};

/// Where the window is all but black, in high contrast, fields would have no edges either.
void ShowEdges() {
  constexpr int kAllButBlack = 24, kDark = 96;
  const int brightness = QApplication::palette().color(QPalette::Window).lightness();
  if (brightness >= kDark || QApplication::style()->name() != kUsualStyle) return;
  QApplication::setStyle(brightness < kAllButBlack
                             ? QStyleFactory::create(QStringLiteral("windows"))
                             : new BrightEdges);
}

/// The fields' own colour with some red, on which texts are read as before: dark, bright or in high
/// contrast.
QColor ErrorBack(const QPalette& palette) {
  constexpr int kRed = 2, kAll = 9;  // parts
  const QColor base = palette.color(QPalette::Base);
  const auto mixed = [](int own, int red) { return (own * (kAll - kRed) + red * kRed) / kAll; };
  return {mixed(base.red(), 255), mixed(base.green(), 0), mixed(base.blue(), 0)};
}

}  // namespace

void NeedApplication() {
  static bool is_ours = false;
  if (QCoreApplication::instance() == nullptr) {
    NeedScreen();
    MakeApplication();
    is_ours = true;
  }
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw NoWindows("the host program's Qt application is no QApplication");
  }
  if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
    throw NoWindows("this is not the thread of the process's Qt application. Call it there");
  }
  if (is_ours) ShowEdges();
}

QSettings KeptForPerson() {
  return QSettings(QStringLiteral("VokCubeQ17"), QStringLiteral("windows"));
}

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

void MarkState(QWidget& widget, const Control& control, const std::string& error_text) {
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
  if (control.Error) spoken.append(Text(error_text));
  if (!control.ToolTipText.empty()) spoken.append(Text(control.ToolTipText));
  const QString description = spoken.join(QStringLiteral(". "));
  if (widget.accessibleDescription() != description) widget.setAccessibleDescription(description);
}

}  // namespace vok::qt
