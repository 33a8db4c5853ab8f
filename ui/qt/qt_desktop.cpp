#include "ui/qt/qt_desktop.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <thread>
#include <utility>

#include "platform/failure.h"
#include "ui/qt/application.h"

namespace vok::qt {
namespace {

/// "Cub files(*.cub)|*.cub" as Qt has it: "Cub files (*.cub)", one for each pair.
QStringList Filters(const std::string& filter) {
  const QStringList parts = Text(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString name = parts[i].section(QLatin1Char('('), 0, 0).trimmed();
    QString patterns = parts[i + 1];
    patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
    patterns.replace(QStringLiteral("*.*"), QStringLiteral("*"));  // also names without a dot
    filters.append(name + QStringLiteral(" (") + patterns + QLatin1Char(')'));
  }
  return filters;
}

/// "xlsX" of "Excel files(*.xlsX)|*.xlsX"; "" where any file is fine.
QString EndingOf(const std::string& filter) {
  const QString pattern = Text(filter).section(QLatin1Char('|'), 1, 1);
  return pattern.startsWith(QStringLiteral("*.")) && pattern != QStringLiteral("*.*")
             ? pattern.mid(2)
             : QString();
}

QMessageBox::StandardButtons ButtonsOf(const MessageBox& box) {
  constexpr int kButtons[] = {QMessageBox::Ok, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel};
  const int help = box.help_context > 0 ? QMessageBox::Help : 0;
  return QMessageBox::StandardButtons(kButtons[static_cast<int>(box.buttons)] | help);
}

MessageAnswer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return MessageAnswer::kYes;
    case QMessageBox::No:
      return MessageAnswer::kNo;
    case QMessageBox::Cancel:
      return MessageAnswer::kCancel;
    default:
      return MessageAnswer::kOk;
  }
}

/// Not every desktop gives the focus back to the window below.
int Ask(QDialog& dialog) {
  const int answer = dialog.exec();
  if (dialog.parentWidget() != nullptr) dialog.parentWidget()->activateWindow();
  return answer;
}

}  // namespace

QtDesktop::QtDesktop() { NeedApplication(); }

QWidget* QtDesktop::Owner() const {
  return open_.empty() ? QApplication::activeWindow() : open_.back();
}

void QtDesktop::RefreshAll() {
  for (FormWindow* window : open_) window->Refresh();
}

void QtDesktop::ShowModal(Form& form) {
  RefreshAll();
  FormWindow window(form, Owner());
  struct Listed {
    explicit Listed(std::vector<FormWindow*>& all, FormWindow* one) : windows(all) {
      windows.push_back(one);
    }
    ~Listed() { windows.pop_back(); }
    std::vector<FormWindow*>& windows;
  } const listed(open_, &window);
  window.Run();
}

std::string QtDesktop::PickFile(const FileDialog& dialog) {
  RefreshAll();
  const QString folder = Text(dialog.folder);
  QFileDialog picker(Owner(), Text(dialog.title),
                     QDir(folder).exists() && !folder.isEmpty() ? folder : QDir::currentPath());
  picker.setNameFilters(Filters(dialog.filter));
  if (dialog.save) {
    picker.setAcceptMode(QFileDialog::AcceptSave);
    picker.setDefaultSuffix(EndingOf(dialog.filter));
  } else {
    picker.setFileMode((dialog.flags & kFileMustExist) != 0 ? QFileDialog::ExistingFile
                                                            : QFileDialog::AnyFile);
  }
  if (Ask(picker) != QDialog::Accepted) return {};
  return picker.selectedFiles().value(0).toStdString();
}

/// Help does not end what the person is doing: what is in its way is told.
void QtDesktop::ShowHelp(const std::string& help_file) {
  try {
    OpenOnDesktop(help_file);
  } catch (const Failure& failure) {
    ShowHere({failure.description(), "", MessageIcon::kExclamation, MessageButtons::kOk, "", 0});
  }
}

void QtDesktop::OpenOnDesktop(const std::string& path) {
  if (!QFileInfo::exists(Text(path))) {
    throw Failure(failure_number::kFileNotFound, "There is no file or folder " + path + " to open");
  }
  if (QDesktopServices::openUrl(QUrl::fromLocalFile(Text(path)))) return;
  throw Failure(failure_number::kInvalidCall, "The desktop has no program that opens " + path);
}

std::string QtDesktop::Name() const { return std::string("Qt ") + qVersion(); }

void QtDesktop::CopyText(const std::string& text) {
  QGuiApplication::clipboard()->setText(Text(text));
}

std::string QtDesktop::Recall(const std::string& name) {
  return KeptForPerson().value(Text(name)).toString().toStdString();
}

void QtDesktop::Remember(const std::string& name, const std::string& text) {
  KeptForPerson().setValue(Text(name), Text(text));
}

void QtDesktop::RunBeside(const std::function<void()>& work) {
  RefreshAll();
  QEventLoop loop;
  std::exception_ptr failure;
  std::thread worker([&] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
  });
  loop.exec();
  worker.join();
  if (failure != nullptr) std::rethrow_exception(failure);
}

MessageAnswer QtDesktop::Show(const MessageBox& box) {
  if (QThread::currentThread() == qApp->thread()) return ShowHere(box);
  MessageAnswer answer{};
  QMetaObject::invokeMethod(
      qApp, [&] { answer = ShowHere(box); }, Qt::BlockingQueuedConnection);
  return answer;
}

MessageAnswer QtDesktop::ShowHere(const MessageBox& box) {
  constexpr QMessageBox::Icon kIcons[] = {QMessageBox::NoIcon, QMessageBox::Critical,
                                          QMessageBox::Question, QMessageBox::Warning,
                                          QMessageBox::Information};
  RefreshAll();
  QMessageBox shown(Owner());
  shown.setAttribute(Qt::WA_QuitOnClose, false);
  if (Owner() != nullptr) shown.setLayoutDirection(Owner()->layoutDirection());
  shown.setTextFormat(Qt::PlainText);
  shown.setTextInteractionFlags(Qt::TextSelectableByMouse);
  shown.setWindowTitle(box.title.empty() ? QStringLiteral("VokCubeQ17") : Text(box.title));
  shown.setText(Text(box.text).remove(QLatin1Char('\r')));
  shown.setIcon(kIcons[static_cast<int>(box.icon)]);
  shown.setStandardButtons(ButtonsOf(box));
  // Such a box asks whether something may be lost: it is not to be answered by a key too many.
  if (box.buttons == MessageButtons::kYesNo) shown.setDefaultButton(QMessageBox::No);
  int button = Ask(shown);
  while (button == QMessageBox::Help) {
    ShowHelp(box.help_file);
    button = Ask(shown);
  }
  return AnswerOf(button);
}

}  // namespace vok::qt
