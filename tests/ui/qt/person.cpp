#include "tests/ui/drawn/person.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtGui/QAccessible>
#include <QtGui/QAction>
#include <QtGui/QScreen>
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
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFrame>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "drawn_desktop.h"
#include "tests/support/temporary_folder.h"
#include "ui/qt/application.h"

/// What these keep for the life of the process.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus\n";
}

namespace vok::test {
namespace {

/// What the windows remember of their places goes with the tests; a test's next process has it,
/// too. No display is needed, unless the environment asks for a real one: it is that of a small
/// laptop.
struct Screen {
  Screen() {
    const std::string file = folder.File("screen.json");
    std::ofstream(file) << R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 1366,
        "height": 768, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + file).c_str(), 0);
    const bool is_next = std::getenv("VOKCUBE_NEXT_PROCESS") != nullptr;
    setenv("XDG_CONFIG_HOME", folder.path().c_str(), is_next ? 0 : 1);
  }
  TemporaryFolder folder;
};
const Screen screen;

constexpr int kAfterAllEvents = 1;  // millisecond
constexpr int kPatience = 30'000;

QString Qt16(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

namespace {

QPalette Dark() {
  QPalette dark(QColor(0x2d, 0x2d, 0x30));
  dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
  return dark;
}

QPalette HighContrast() {
  const QColor paper = Qt::black, ink = Qt::white;
  QPalette palette(ink, paper, ink, ink, ink, ink, ink, paper, paper);
  palette.setColor(QPalette::Highlight, Qt::yellow);
  palette.setColor(QPalette::HighlightedText, paper);
  palette.setColor(QPalette::PlaceholderText, Qt::green);
  return palette;
}

}  // namespace

/// As another desktop looks, where pictures of one are wanted.
DrawnDesktop::DrawnDesktop() {
  const QByteArray look = qgetenv("VOKCUBE_LOOK");
  if (look == "dark") QApplication::setPalette(Dark());
  if (look == "contrast") QApplication::setPalette(HighContrast());
  qt::NeedApplication();
}

QWidget* FrontWindow() { return QApplication::activeModalWidget(); }

QWidget* FrontWidget(const std::string& control) {
  QWidget* front = FrontWindow();
  return front == nullptr ? nullptr : front->findChild<QWidget*>(Qt16(control));
}

namespace {

QAction* MenuEntry(const std::string& name) {
  const QWidget* front = FrontWindow();
  return front == nullptr ? nullptr : front->findChild<QAction*>(Qt16(name));
}

}  // namespace

namespace front {

/// Not while the screen has not made it the active one, nor while it shows a button pressed whose
/// key was.
bool IsReady() {
  const QWidget* front = FrontWindow();
  if (front == nullptr) return false;
  const auto buttons = front->findChildren<QPushButton*>();
  return front->isActiveWindow() &&
         std::none_of(buttons.begin(), buttons.end(), [](const auto* b) { return b->isDown(); });
}

std::string Title() {
  const QWidget* window = FrontWindow();
  if (window == nullptr) return "no window";
  const auto* box = qobject_cast<const QMessageBox*>(window);
  return (box != nullptr ? box->text() : window->windowTitle()).toStdString();
}

std::string Focus() {
  const QWidget* front = FrontWindow();
  const QWidget* focus = front == nullptr ? nullptr : front->focusWidget();
  return focus == nullptr ? "" : focus->objectName().toStdString();
}

std::string Text(const std::string& control) {
  QWidget* widget = FrontWidget(control);
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) return edit->text().toStdString();
  if (auto* combo = qobject_cast<QComboBox*>(widget)) return combo->currentText().toStdString();
  if (auto* label = qobject_cast<QLabel*>(widget)) return label->text().toStdString();
  if (auto* box = qobject_cast<QCheckBox*>(widget)) {
    return box->checkState() == Qt::Checked ? "1" : box->checkState() == Qt::Unchecked ? "0" : "2";
  }
  if (auto* button = qobject_cast<QAbstractButton*>(widget)) return button->text().toStdString();
  return {};
}

bool Shows(const std::string& control) {
  if (const QAction* entry = MenuEntry(control)) return entry->isVisible();
  const QWidget* widget = FrontWidget(control);
  return widget != nullptr && widget->isVisible();
}

void Press(const std::string& keys) {
  const QKeyCombination key = QKeySequence(Qt16(keys), QKeySequence::PortableText)[0];
  QWidget* menu = QApplication::activePopupWidget();
  QTest::keyClick((menu != nullptr ? menu : FrontWindow())->windowHandle(), key.key(),
                  key.keyboardModifiers());
}

void Type(const std::string& text) {
  for (const QChar c : Qt16(text)) {
    QTest::sendKeyEvent(QTest::Click, FrontWindow()->windowHandle(), Qt::Key_unknown, QString(c),
                        Qt::NoModifier);
  }
}

void Click(const std::string& control) {
  if (QAction* entry = MenuEntry(control)) return entry->trigger();
  QWidget* widget = FrontWidget(control);
  const bool box = qobject_cast<QCheckBox*>(widget) != nullptr;  // alone its mark is sure to be hit
  constexpr int kInMark = 8;
  const int from_start = box ? kInMark : widget->width() / 2;
  const QPoint place(widget->isRightToLeft() ? widget->width() - from_start : from_start,
                     widget->height() / 2);
  for (QWidget* area = widget->parentWidget(); area != nullptr; area = area->parentWidget()) {
    if (auto* body = qobject_cast<QScrollArea*>(area)) body->ensureWidgetVisible(widget);
  }
  QWidget* window = widget->window();
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget->mapTo(window, place));
}

void Scroll(const std::string& control) {
  QScrollBar* bar = qobject_cast<QAbstractScrollArea*>(FrontWidget(control))->horizontalScrollBar();
  bar->setValue(bar->pageStep());
}

void Close() { FrontWindow()->close(); }

namespace {

/// A path that is cut has all of itself as tool tip.
bool HoldsAllTyped(const QLineEdit& edit) {
  constexpr int kAroundText = 2;  // as the field draws it
  QStyleOptionFrame frame;
  frame.initFrom(&edit);
  const QRect room = edit.style()->subElementRect(QStyle::SE_LineEditContents, &frame, &edit);
  return edit.toolTip() == edit.text() ||
         edit.fontMetrics().horizontalAdvance(edit.text()) <= room.width() - 2 * kAroundText;
}

bool HoldsItsText(const QWidget& widget) {
  if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) return HoldsAllTyped(*edit);
  if (const auto* label = qobject_cast<const QLabel*>(&widget); label && label->wordWrap()) {
    return label->heightForWidth(label->width()) <= label->height();
  }
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button == nullptr && qobject_cast<const QLabel*>(&widget) == nullptr) return true;
  const QString text = button != nullptr ? button->text() : QString();
  if (button != nullptr && text.isEmpty()) return true;
  const int around = qobject_cast<const QCheckBox*>(button) != nullptr
                         ? widget.sizeHint().width() - widget.fontMetrics().horizontalAdvance(text)
                         : 0;
  const int needed = button != nullptr
                         ? widget.fontMetrics().size(Qt::TextShowMnemonic, text).width() + around
                         : widget.sizeHint().width();
  return needed <= widget.width() && widget.fontMetrics().height() <= widget.height();
}

/// The edges of a check box are not as dark, or as bright, as what is around them.
bool IsMarked(QWidget& widget) {
  constexpr int kSeen = 40, kMark = 14;  // of lightness; pixels
  if (qobject_cast<QCheckBox*>(&widget) == nullptr) return true;
  const QImage drawn = widget.grab().toImage();
  const int around = widget.palette().color(QPalette::Window).lightness();
  int most = 0;
  for (int x = 0; x < kMark; ++x) {
    const int place = widget.isRightToLeft() ? drawn.width() - 1 - x : x;
    const int lightness = drawn.pixelColor(place, drawn.height() / 2).lightness();
    most = std::max(most, std::abs(lightness - around));
  }
  return most >= kSeen;
}

/// All that can be used has a name and says what it is.
bool CanBeReadOut(QWidget& widget) {
  constexpr QAccessible::Role kUsed[] = {QAccessible::EditableText, QAccessible::ComboBox,
                                         QAccessible::CheckBox,     QAccessible::Button,
                                         QAccessible::List,         QAccessible::Table};
  if (widget.focusPolicy() == Qt::NoFocus || qobject_cast<QLabel*>(&widget) != nullptr) return true;
  const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&widget);
  return !spoken->text(QAccessible::Name).trimmed().isEmpty() &&
         std::find(std::begin(kUsed), std::end(kUsed), spoken->role()) != std::end(kUsed);
}

}  // namespace

std::string Misfits() {
  const QWidget* window = FrontWindow();
  QStringList misfits;
  if (!window->screen()->availableGeometry().contains(window->frameGeometry())) {
    misfits.append(QStringLiteral("the window"));
  }
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    const bool named = !widget->objectName().isEmpty() && !widget->objectName().startsWith(u"qt_");
    if (!named || !widget->isVisible()) continue;
    const QWidget& around = *widget->parentWidget();
    if (!HoldsItsText(*widget) || !IsMarked(*widget) || !CanBeReadOut(*widget) ||
        !around.rect().contains(widget->geometry())) {
      misfits.append(widget->objectName());
    }
  }
  for (const auto* area : window->findChildren<QScrollArea*>()) {
    if (area->horizontalScrollBar()->maximum() > 0) misfits.append(QStringLiteral("to the side"));
  }
  return misfits.join(QStringLiteral(", ")).toStdString();
}

void Shoot(const std::string& file) { FrontWindow()->grab().save(Qt16(file)); }

}  // namespace front

class Person::AtWork {
 public:
  explicit AtWork(const std::string& script) : steps_(StepsOf(script)) { Await(); }
  ~AtWork() {
    if (!steps_.empty() && std::uncaught_exceptions() == 0) GiveUp(steps_.front().line);
  }

 private:
  /// Through the timer after all that is due, through the queue after a window's loop that ended.
  void Await() {
    QTimer::singleShot(kAfterAllEvents, &life_, [this] {
      QMetaObject::invokeMethod(
          qApp, [this] { Next(); }, Qt::QueuedConnection);
    });
  }

  /// The next step is due before this one is made: it may open a window, whose loop then makes it.
  void Next() {
    const int loops = QThread::currentThread()->loopLevel();
    const Step step = steps_.front();
    // a mouse click lets events through before it is done
    if (loops == loops_ || !Holds(step)) {
      if (waiting_.hasExpired(kPatience)) GiveUp(step.line);
      return Await();
    }
    const QScopedValueRollback making(loops_, loops);
    waiting_.start();
    steps_.pop_front();
    if (steps_.empty()) {
      QTimer::singleShot(kPatience, &life_, [step] { GiveUp(step.line + "; close all"); });
    } else {
      Await();
    }
    Do(step);
  }

  QObject life_;
  std::deque<Step> steps_;
  int loops_ = 0;  ///< event loops that were running when the step in work began; 0: none is
  QElapsedTimer waiting_ = [] {
    QElapsedTimer timer;
    timer.start();
    return timer;
  }();
};

Person::Person(const std::string& script) : work_(std::make_unique<AtWork>(script)) {}
Person::~Person() = default;

}  // namespace vok::test
