// What Qt alone draws and offers.
#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTableView>

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
    form.At("rows").Rows = {{"z", "3"}};
    form.At("name").Error = form.At("date").Dimmed = form.At("busy").Visible = true;
    form.Focus = ControlId("rows");
  });
  form.Rule(FormEvent::kClicked, "save", [&] {
    const auto* rows = dynamic_cast<QTableView*>(FrontWidget("rows"))->model();
    EXPECT_EQ(rows->rowCount(), 1);
    EXPECT_NE(rows->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight, 0);
    const QWidget* name = FrontWidget("name");
    EXPECT_EQ(name->accessibleName(), "Name 2");
    EXPECT_EQ(name->accessibleDescription(), "Error");
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
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "z\t3");
  EXPECT_EQ(form.Told(), "left name; clicked run; left rows; clicked save; clicked cancel");
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
