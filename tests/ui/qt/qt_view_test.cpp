// The view as such: a form with every kind of control, and what a window asks of the desktop.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QTableView>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/failure.h"
#include "tests/support/temporary_folder.h"
#include "tests/ui/qt/ui_driver.h"
#include "ui/qt/qt_desktop.h"

namespace vok {
namespace {

using test::UiDriver;
using testing::ElementsAre;
using enum ControlType;
using enum FormEvent;

/// Writes down what its controls hear.
struct EveryKind {
  EveryKind() {
    form.Caption = "Every kind";
    form.RightToLeft = true;
    form.Add({.Name = "mnuMore", .Type = kMenu, .Caption = "&More"});
    form.Add({.Name = "mnuRun",
              .Type = kMenu,
              .Caption = "Run",
              .Container = "mnuMore",
              .Shortcut = "Ctrl+R"});
    form.Add({.Name = "fra", .Type = kFrame, .Caption = "Frame", .Grows = true});
    Add({.Name = "lbl", .Type = kLabel, .Caption = "&Name"}, 0, 0);
    Add({.Name = "txt", .Type = kTextBox, .Index = 2, .Label = "lbl", .Row = "2"}, 0, 1);
    Add({.Name = "locked", .Type = kTextBox, .Text = "read", .Locked = true, .Dimmed = true}, 1, 0);
    Add({.Name = "cmb", .Type = kComboBox, .List = {"Sales", "Stock"}}, 1, 1);
    Add({.Name = "lst", .Type = kListBox, .List = {"a", "b"}, .ListIndex = 0, .Height = 2}, 2, 0);
    Add({.Name = "chk", .Type = kCheckBox, .Caption = "<b>", .Value = kGrayed}, 2, 1);
    Add({.Name = "lsv",
         .Type = kListView,
         .Items = {{.Text = "T"}, {.Text = "N", .IsNumber = true}},
         .Rows = {{"x", "1"}, {"y", "2"}},
         .Width = 20,
         .Height = 3,
         .GrowsDown = true},
        3, 0);
    Add({.Name = "chart",
         .Type = kChart,
         .Bars = {{"up", 2, "2.0"}, {"down", -1, "-1.0"}},
         .Width = 20,
         .Height = 4},
        3, 1);
    Add({.Name = "bar", .Type = kProgressBar, .Visible = false}, 4, 0);
    Add({.Name = "cmdOk", .Type = kCommandButton, .Caption = "&OK", .Default = true}, 4, 1);
    for (const char* name : {"txt", "cmb", "lst", "chk", "cmdOk", "mnuRun"}) {
      form.On(kChanged, name, [this, name](int) { heard.push_back(name + (" =" + Value(name))); });
      form.On(kClicked, name,
              [this, name](int) { heard.push_back(std::string(name) + " clicked"); });
      form.On(kLeft, name, [this, name](int) { heard.push_back(std::string(name) + " left"); });
    }
  }
  void Add(Control control, int row, int column) {
    control.Container = "fra";
    control.Cell = {row, column};
    form.Add(std::move(control));
  }
  std::string Value(const std::string& name) {
    return form.Text({name, name == "txt" ? 2 : kNoIndex});
  }

  Form form{"frmEvery", ""};
  std::vector<std::string> heard;
};

TEST(QtView, EveryKindOfControlIsDrawnAndHeard) {
  qt::QtDesktop desktop;
  EveryKind every;
  Form& form = every.form;
  form.On(kClicked, "mnuRun", [&](int) {
    form.SetList("cmb", {"New"});
    form.At("lsv").Rows = {{"z", "3"}};
    form.At({"txt", 2}).Error = form.At("bar").Visible = true;
    form.Focus = ControlId("chk");
    auto* table = dynamic_cast<QTableView*>(UiDriver::Find("lsv"));
    table->selectAll();
  });
  form.On(kClicked, "cmdOk", [&](int) {
    auto* table = dynamic_cast<QTableView*>(UiDriver::Find("lsv"));
    EXPECT_EQ(table->model()->rowCount(), 1);
    EXPECT_EQ(table->model()->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight,
              Qt::AlignRight);
    EXPECT_EQ(dynamic_cast<QComboBox*>(UiDriver::Find("cmb"))->count(), 1);
    QWidget* text = UiDriver::Find("txt(2)");
    EXPECT_EQ(text->accessibleName(), "Name 2");
    EXPECT_EQ(text->accessibleDescription(), "Error");
    EXPECT_NE(text->palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
    QWidget* dimmed = UiDriver::Find("locked");
    EXPECT_EQ(dimmed->palette().color(QPalette::Text),
              QApplication::palette().color(QPalette::PlaceholderText));
    EXPECT_TRUE(UiDriver::Find("bar")->isVisible());
    EXPECT_EQ(UiDriver::Front()->layoutDirection(), Qt::RightToLeft);
    EXPECT_GT(text->mapTo(UiDriver::Front(), QPoint()).x(), 0);
    EXPECT_LT(text->x(), UiDriver::Find("lbl")->x()) << "from right to left";
    form.Visible = false;
  });
  const UiDriver person(R"(
      front Every kind
      focus txt(2)
      type ab
      press Tab
      focus cmb
      type S
      see cmb S
      press Down
      see cmb Sales
      press Tab
      focus lst
      press Down
      press Tab
      focus chk
      see chk 1
      press Space
      see chk 0
      press Tab
      focus lsv
      press Ctrl+A
      press Ctrl+C
      press Alt+N
      focus txt(2)
      press Ctrl+R
      focus chk
      shot every
      press Alt+O)");
  desktop.ShowModal(form);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "x\t1\ny\t2");
  EXPECT_THAT(every.heard, ElementsAre("txt =ab", "txt left", "cmb =S", "cmb =Sales", "cmb clicked",
                                       "cmb left", "lst =b", "lst clicked", "lst left",
                                       "chk clicked", "chk left", "txt left", "chk left"));
}

TEST(QtView, AFailureOfARuleClosesTheWindowsAndComesBack) {
  qt::QtDesktop desktop;
  Form outer("outer", ""), inner("inner", "");
  for (Form* form : {&outer, &inner}) {
    form->Add({.Name = "cmd", .Type = kCommandButton, .Caption = "Go"});
  }
  outer.On(kClicked, "cmd", [&](int) { desktop.ShowModal(inner); });
  inner.On(kClicked, "cmd", [&](int) { throw Failure(53, "gone"); });
  const UiDriver person("click cmd\nclick cmd");
  EXPECT_THROW(desktop.ShowModal(outer), Failure);
  EXPECT_FALSE(outer.Visible || inner.Visible);
}

TEST(QtView, LongWorkRunsBesideWindowsThatStayAlive) {
  qt::QtDesktop desktop;
  Form form("run", "");
  std::atomic<bool> stopped = false;
  form.Add({.Name = "cmdRun", .Type = kCommandButton, .Caption = "Run"});
  form.Add({.Name = "cmdStop",
            .Type = kCommandButton,
            .Caption = "Stop",
            .Enabled = false,
            .Cell = {1, 0}});
  form.On(kClicked, "cmdStop", [&](int) { stopped = true; });
  MessageAnswer answer{};
  form.On(kClicked, "cmdRun", [&](int) {
    form.At("cmdStop").Enabled = true;
    const auto work = [&] {
      answer =
          desktop.Show({"Go on?", "", MessageIcon::kQuestion, MessageButtons::kYesNoCancel, "", 0});
      while (!stopped) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      throw Failure(7, "stopped");
    };
    EXPECT_THROW(desktop.RunBeside(work), Failure);
  });
  const UiDriver person("click cmdRun\nawait Go on?\npress Alt+Y\nclick cmdStop\nclose");
  desktop.ShowModal(form);
  EXPECT_EQ(answer, MessageAnswer::kYes);
}

TEST(QtView, FilesArePickedFromTheCurrentFolder) {
  qt::QtDesktop desktop;
  const test::TemporaryFolder folder;
  const QString before = QDir::currentPath();
  QDir::setCurrent(QString::fromStdString(folder.path()));
  const FileDialog dialog{"Save", "Excel files(*.xlsX)|*.xlsX", kPathMustExist, true};
  {
    const UiDriver person("front Save\ntype out\npress Return");
    EXPECT_EQ(desktop.PickFile(dialog), folder.File("out.xlsX"));
  }
  const UiDriver person("press Esc");
  EXPECT_EQ(desktop.PickFile(dialog), "");
  QDir::setCurrent(before);
  EXPECT_THROW(desktop.OpenOnDesktop(folder.File("missing")), Failure);
}

}  // namespace
}  // namespace vok
