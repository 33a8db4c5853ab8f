#include "tests/ui/qt/ui_driver.h"

#include <gtest/gtest.h>

#include <QtCore/QScopedValueRollback>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <cstdlib>
#include <sstream>

/// What these keep for the life of the process.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus\n";
}

namespace vok::test {
namespace {

/// No display is needed, unless the environment asks for a real one.
[[maybe_unused]] const bool offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 0) == 0;

constexpr int kAfterAllEvents = 1;  // millisecond
constexpr int kPatience = 2000;

QString Qt16(const std::string& text) { return QString::fromStdString(text); }

std::string TextOf(QWidget* widget) {
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) return edit->text().toStdString();
  if (auto* combo = qobject_cast<QComboBox*>(widget)) return combo->currentText().toStdString();
  if (auto* label = qobject_cast<QLabel*>(widget)) return label->text().toStdString();
  if (auto* box = qobject_cast<QCheckBox*>(widget)) return std::to_string(box->checkState());
  if (auto* button = qobject_cast<QAbstractButton*>(widget)) return button->text().toStdString();
  return {};
}

std::string TitleOf(QWidget* window) {
  if (window == nullptr) return "no window";
  const auto* box = qobject_cast<QMessageBox*>(window);
  return (box != nullptr ? box->text() : window->windowTitle()).toStdString();
}

void Press(const std::string& keys) {
  const auto sequence = QKeySequence(Qt16(keys), QKeySequence::PortableText);
  const QKeyCombination key = sequence[0];
  QWidget* menu = QApplication::activePopupWidget();
  QTest::keyClick((menu != nullptr ? menu : UiDriver::Front())->windowHandle(), key.key(),
                  key.keyboardModifiers());
}

void Type(const std::string& text) {
  for (const QChar c : Qt16(text)) {
    QTest::sendKeyEvent(QTest::Click, UiDriver::Front()->windowHandle(), Qt::Key_unknown,
                        QString(c), Qt::NoModifier);
  }
}

void Click(const std::string& control) {
  QWidget* widget = UiDriver::Find(control);
  if (widget == nullptr) return;
  const bool box = qobject_cast<QCheckBox*>(widget) != nullptr;  // alone its mark is sure to be hit
  constexpr int kInMark = 8;
  const int from_start = box ? kInMark : widget->width() / 2;
  const QPoint place(widget->isRightToLeft() ? widget->width() - from_start : from_start,
                     widget->height() / 2);
  QWidget* window = widget->window();
  const QPoint point = widget->mapTo(window, place);
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, point);
}

/// A picture of the window in front, where the environment names a folder for it.
void Shoot(const std::string& name) {
  const QString folder = qEnvironmentVariable("VOKCUBE_SCREENSHOTS");
  if (folder.isEmpty()) return;
  EXPECT_TRUE(UiDriver::Front()->grab().save(folder + Qt16("/" + name + ".png")));
}

/// A window in front is not yet ready for keys while the screen has not made it the active one, nor
/// while it shows a button pressed whose key was.
bool IsReady(const QWidget* front) {
  if (front == nullptr) return true;
  const auto buttons = front->findChildren<QPushButton*>();
  return front->isActiveWindow() &&
         std::none_of(buttons.begin(), buttons.end(), [](const auto* b) { return b->isDown(); });
}

bool IsSeen(const std::string& what) {
  if (TitleOf(UiDriver::Front()) == what) return true;
  const auto* widget = UiDriver::Front()->findChild<QWidget*>(Qt16(what));
  return widget != nullptr && widget->isVisible();
}

}  // namespace

QWidget* UiDriver::Front() { return QApplication::activeModalWidget(); }

QWidget* UiDriver::Find(const std::string& control) {
  QWidget* front = Front();
  auto* found = front == nullptr ? nullptr : front->findChild<QWidget*>(Qt16(control));
  EXPECT_NE(found, nullptr) << control << " in " << TitleOf(front);
  return found;
}

UiDriver::UiDriver(const std::string& script) {
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find_first_not_of(' '));
    if (!line.empty()) steps_.push_back(line);
  }
  Await();
}

UiDriver::~UiDriver() {
  EXPECT_TRUE(steps_.empty()) << "never came to: " << (steps_.empty() ? "" : steps_.front());
  EXPECT_EQ(Front(), nullptr);
}

/// Through the timer after all that is due, through the queue after a window's loop that ended.
void UiDriver::Await() {
  QTimer::singleShot(kAfterAllEvents, &life_, [this] {
    QMetaObject::invokeMethod(
        qApp, [this] { Next(); }, Qt::QueuedConnection);
  });
}

/// The next step is due before this one is made: it may open a window, whose loop then makes it.
void UiDriver::Next() {
  const int loops = QThread::currentThread()->loopLevel();
  // a mouse click lets events through before it is done
  if (loops == loops_ || !IsReady(Front())) return Await();
  const QScopedValueRollback making(loops_, loops);
  const std::string step = steps_.front();
  if (step.starts_with("await ") && !IsSeen(step.substr(6))) return Await();
  steps_.pop_front();
  if (!steps_.empty()) Await();
  if (steps_.empty()) {
    QTimer::singleShot(kPatience, &life_, [step] {
      qFatal("after \"%s\" stays open: %s", step.c_str(), TitleOf(Front()).c_str());
    });
  }
  SCOPED_TRACE(step);
  Do(step);
}

void UiDriver::Do(const std::string& step) {
  const std::size_t blank = std::min(step.find(' '), step.size());
  const std::string verb = step.substr(0, blank);
  const std::string what = blank < step.size() ? step.substr(blank + 1) : "";
  ASSERT_NE(Front(), nullptr);
  if (verb == "press") return Press(what);
  if (verb == "click") return Click(what);
  if (verb == "type") return Type(what);
  if (verb == "await") return;
  if (verb == "close") return static_cast<void>(Front()->close());
  if (verb == "shot") return Shoot(what);
  if (verb == "front") {
    EXPECT_EQ(TitleOf(Front()), what);
  } else if (verb == "says") {
    const std::string title = TitleOf(Front());
    EXPECT_TRUE(title.find(what) != title.npos) << what << " in " << title;
  } else if (verb == "focus") {
    EXPECT_EQ(Front()->focusWidget()->objectName().toStdString(), what);
  } else if (verb == "see") {
    const std::size_t end = std::min(what.find(' '), what.size());
    const std::string text = end < what.size() ? what.substr(end + 1) : "";
    if (QWidget* widget = Find(what.substr(0, end))) {
      EXPECT_EQ(TextOf(widget), text);
    }
  } else {
    FAIL() << "no such verb";
  }
}

}  // namespace vok::test
