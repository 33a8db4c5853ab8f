// What Qt alone draws and offers.
#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtGui/QClipboard>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTableView>
#include <cstdlib>
#include <functional>
#include <iostream>

#include "drawn_desktop.h"
#include "platform/failure.h"
#include "tests/support/temporary_folder.h"
#include "tests/ui/drawn/person.h"
#include "tests/ui/drawn/sample_form.h"

namespace vok::test {
namespace {

TEST(QtView, WhatARuleChangesIsDrawnAndRead) {
  qt::QtDesktop desktop;
  SampleForm form;
  form.RightToLeft = true;
  form.At("busy").Visible = false;
  form.Rule(FormEvent::kClicked, "run", [&] {
    form.SetList("set", {"New"});
    form.At("rows").Rows = {{"z", "3"}, {"y", "4"}};
    form.At("name").Error = form.At("date").Dimmed = form.At("busy").Visible = true;
    form.Focus = ControlId("rows");
  });
  form.Rule(FormEvent::kClicked, "save", [&] {
    const auto* rows = dynamic_cast<QTableView*>(FrontWidget("rows"))->model();
    EXPECT_EQ(rows->headerData(1, Qt::Vertical).toString(), "y") << "stays in sight";
    EXPECT_NE(rows->index(0, 0).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight, 0);
    const QWidget* name = FrontWidget("name");
    EXPECT_EQ(name->accessibleName(), "Name 2");
    EXPECT_EQ(name->accessibleDescription(), "Wrong");
    const QPalette plain = QApplication::palette();
    EXPECT_NE(name->palette().color(QPalette::Base), plain.color(QPalette::Base));
    EXPECT_EQ(FrontWidget("date")->palette().color(QPalette::Text),
              plain.color(QPalette::PlaceholderText));
    EXPECT_TRUE(FrontWidget("busy")->isVisible());
    EXPECT_EQ(FrontWindow()->layoutDirection(), Qt::RightToLeft);
    EXPECT_LT(name->x(), FrontWidget("lblName")->x()) << "from right to left";
  });
  const Person person(
      "see box 2; press F5; focus rows; press Ctrl+A; press Ctrl+C; press Ctrl+S; close");
  desktop.ShowModal(form);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "z\t3\ny\t4");
  EXPECT_EQ(form.Told(), "left name; clicked run; left rows; clicked save; clicked cancel");
}

/// In a process of its own; `act` gets the window and its splitter.
[[noreturn]] void ShowInNextProcess(const std::function<void(QWidget&, QSplitter&)>& act) {
  qt::QtDesktop desktop;
  SampleForm form;
  form.Remembered = true;
  form.Add({.Name = "beside", .Type = ControlType::kTextBox, .Region = Region::kBeside});
  form.Rule(FormEvent::kClicked, "run",
            [&] { act(*FrontWindow(), *FrontWindow()->findChild<QSplitter*>()); });
  {
    const Person person("press F5; close");
    desktop.ShowModal(form);
  }
  std::exit(0);
}

void TellPlace(const QWidget& window, const QSplitter& splitter) {
  const QRect at = window.geometry();
  std::cerr << at.x() << ' ' << at.y() << ' ' << at.width() << ' ' << at.height() << ", split "
            << (splitter.sizes()[0] > 600 ? "late" : "early") << '\n';
}

void PlaceElsewhere(QWidget& window, QSplitter& splitter) {
  window.setGeometry(90, 70, 900, 600);
  QTest::qWait(1);
  QWidget* const handle = splitter.handle(1);
  const QPoint grip = handle->rect().center(), there = grip + QPoint(700 - handle->x(), 0);
  QTest::mousePress(handle, Qt::LeftButton, {}, grip);
  QTest::mouseMove(handle, there);
  QTest::mouseRelease(handle, Qt::LeftButton, {}, there);
  TellPlace(window, splitter);
}

TEST(QtViewDeathTest, AWindowStandsWhereItStoodInTheProcessBefore) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  setenv("VOKCUBE_NEXT_PROCESS", "on", 1);
  const auto ended = testing::ExitedWithCode(0);
  EXPECT_EXIT(ShowInNextProcess(TellPlace), ended, "split early");
  EXPECT_EXIT(ShowInNextProcess(PlaceElsewhere), ended, "90 70 900 600, split late");
  EXPECT_EXIT(ShowInNextProcess(TellPlace), ended, "90 70 900 600, split late");
  unsetenv("VOKCUBE_NEXT_PROCESS");
}

TEST(QtView, ADateIsPickedFromACalendar) {
  qt::QtDesktop desktop;
  SampleForm form;
  const Person person(
      "press Alt+D; type 5/6/2009; press F4; press Right; press Return; see date 6. 2009; close");
  desktop.ShowModal(form);
  EXPECT_EQ(form.Told(), "left name; date=6. 2009; clicked cancel");
}

TEST(QtView, FilesArePickedFromTheCurrentFolder) {
  qt::QtDesktop desktop;
  const TemporaryFolder folder;
  const QString before = QDir::currentPath();
  QDir::setCurrent(QString::fromStdString(folder.path()));
  const FileDialog dialog{"Save", "Excel files(*.xlsX)|*.xlsX", kPathMustExist, true};
  {
    const Person person("front Save; type out; press Return");
    EXPECT_EQ(desktop.PickFile(dialog), folder.File("out.xlsX"));
  }
  const Person person("press Esc");
  EXPECT_EQ(desktop.PickFile(dialog), "");
  QDir::setCurrent(before);
  EXPECT_THROW(desktop.OpenOnDesktop(folder.File("missing")), Failure);
}

}  // namespace
}  // namespace vok::test
