// The windows of a toolkit as such: what a person does to any form is told to it.
#include "tests/ui/drawn/sample_form.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "drawn_desktop.h"
#include "platform/failure.h"
#include "tests/ui/drawn/person.h"

namespace vok::test {
namespace {

MessageBox Question(const std::string& text) {
  return {text, "Title", MessageIcon::kQuestion, MessageButtons::kYesNo, "", 0};
}

/// The rules of the sample: a date that is "bad" is refused, one that is "box" is told of.
struct SampleDesk {
  SampleDesk() {
    form.Rule(FormEvent::kLeft, "date", [this] {
      if (form.Text("date") == "box") desktop.Show(Question("Box"));
      if (form.Text("date") != "bad") return;
      form.SetText("date", "30/12/1899");
      form.Focus = ControlId("date");
    });
    form.Rule(FormEvent::kClicked, "child", [this] {
      child.Caption = "Child";
      child.Rule(FormEvent::kClicked, "child", [] { throw Failure(91, "from a rule"); });
      desktop.ShowModal(child);
    });
  }

  std::string Told(const std::string& script) {
    const Person person(script);
    desktop.ShowModal(form);
    return form.Told();
  }

  DrawnDesktop desktop;
  SampleForm form, child;
};

TEST(DrawnForm, IsToldWhatAPersonDoes) {
  const struct {
    const char* script;
    const char* told;
  } rows[] = {
      {"type ab; press Tab; press Esc", "name=ab; left name; clicked cancel"},
      {"press Alt+D; type 1/; press Return", "left name; date=1/; left date; clicked ok"},
      {"press Alt+D; type bad; press Tab; see date 30/12/1899; press Ctrl+A; type x; close",
       "left name; date=bad; left date; date=30/12/1899; date=x; clicked cancel"},
      {"press Alt+D; type bad; press Return; see date 30/12/1899; focus date; press Esc",
       "left name; date=bad; left date; date=30/12/1899; clicked cancel"},
      {"press Alt+D; type bad; press F5; see date 30/12/1899; focus date; press Esc",
       "left name; date=bad; left date; date=30/12/1899; clicked cancel"},
      {"press Alt+D; type bad; click child; see date 30/12/1899; focus date; press Esc",
       "left name; date=bad; left date; date=30/12/1899; clicked cancel"},
      {"press Alt+D; type box; press Tab; front Box; press Alt+Y; front Sample; press Esc",
       "left name; date=box; left date; clicked cancel"},
      {"press Alt+D; type 1; press Ctrl+S; press Esc",
       "left name; date=1; left date; clicked save; clicked cancel"},
      {"press Alt+D; type 1; press Alt+B; see box 0; press Esc",
       "left name; date=1; left date; clicked box; clicked cancel"},
      {"press Alt+D; type 1; press Esc", "left name; date=1; clicked cancel"},
      {"press Alt+B; see box 0; click box; see box 1; press Esc",
       "left name; clicked box; clicked box; clicked cancel"},
      {"press Alt+T; press Down; see set A; press Down; see set B; press Esc",
       "left name; set=A; clicked set; set=B; clicked set; clicked cancel"},
      {"press F5; press Ctrl+S; press Esc",
       "left name; clicked run; left name; clicked save; clicked cancel"},
      {"click list; press Down; close", "left name; list=second; clicked list; clicked cancel"},
      {"click child; front Child; type z; press Return; front Sample; press Esc",
       "left name; clicked child; clicked cancel"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.script);
    SampleDesk desk;
    EXPECT_EQ(desk.Told(row.script), row.told);
    EXPECT_FALSE(desk.form.Visible);
  }
}

TEST(DrawnForm, ClosesWithAllThatItOpenedWhenARuleFails) {
  SampleDesk desk;
  try {
    desk.Told("press Alt+C; front Child; press Alt+C");
    ADD_FAILURE() << "nothing failed";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.description(), "from a rule");
  }
  EXPECT_FALSE(desk.form.Visible || desk.child.Visible);
}

TEST(DrawnForm, StaysAliveWhileWorkGoesOnBesideIt) {
  SampleDesk desk;
  std::atomic<bool> stop = false;
  std::string failure;
  MessageAnswer answer{};
  desk.form.Rule(FormEvent::kClicked, "run", [&] {
    const auto thread_of_windows = std::this_thread::get_id();
    try {
      desk.desktop.RunBeside([&] {
        EXPECT_NE(std::this_thread::get_id(), thread_of_windows);
        answer = desk.desktop.Show(Question("Go on?"));
        while (!stop) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        throw Failure(7, "stopped");
      });
    } catch (const Failure& stopped) {
      failure = stopped.description();
    }
  });
  desk.form.Rule(FormEvent::kClicked, "box", [&] { stop = true; });
  EXPECT_EQ(
      desk.Told(
          "press F5; front Go on?; press Alt+N; front Sample; press Alt+B; see box 0; press Esc"),
      "left name; clicked run; left name; clicked box; clicked cancel");
  EXPECT_EQ(answer, MessageAnswer::kNo);
  EXPECT_EQ(failure, "stopped");
}

}  // namespace
}  // namespace vok::test
