#include "ui/qt/application.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QThread>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <clocale>
#include <string>

#include "platform/failure.h"

namespace vok::qt {
namespace {

Failure NoWindows(const std::string& why) {
  return Failure(failure_number::kNotSupported, "No window can be shown: " + why);
}

/// Qt ends the process where it finds no screen, so it is asked for before.
void NeedScreen() {
  for (const char* variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
    if (!qEnvironmentVariableIsEmpty(variable)) return;
  }
  throw NoWindows(
      "neither DISPLAY nor WAYLAND_DISPLAY names a screen. Log in to a desktop, or connect with "
      "ssh -X");
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

}  // namespace

void NeedApplication() {
  if (QCoreApplication::instance() == nullptr) {
    NeedScreen();
    MakeApplication();
  }
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw NoWindows("the host program's Qt application is no QApplication");
  }
  if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
    throw NoWindows("this is not the thread of the process's Qt application. Call it there");
  }
}

}  // namespace vok::qt
