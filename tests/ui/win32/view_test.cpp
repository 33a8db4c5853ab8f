#include <gtest/gtest.h>

#include <atomic>

#include "platform/failure.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_message_boxes.h"
#include "tests/ui/win32/sample_form.h"
#include "tests/ui/win32/ui_driver.h"
#include "ui/win32/windows_desktop.h"

namespace vok::windows {
namespace {

constexpr char kDateText[] = "30/12/1899";

vok::MessageBox Box(const char* title) {
  vok::MessageBox box;
  box.text = "Yes or no?";
  box.title = title;
  box.buttons = MessageButtons::kYesNo;
  return box;
}

/// The rules of the sample: a date that is "bad" is refused, one that is "box" is told of.
struct Desk {
  Desk() {
    form.Rule(FormEvent::kLeft, "date", [this] {
      if (form.Text("date") == "box") desktop.Show(Box("Box"));
      if (form.Text("date") != "bad") return;
      form.SetText("date", kDateText);
      form.Focus = ControlId("date");
    });
    form.Rule(FormEvent::kClicked, "child", [this] {
      child.Caption = "Child";
      child.Rule(FormEvent::kClicked, "child", [] { throw Failure(91, "from a rule"); });
      desktop.ShowModal(child);
    });
  }

  std::string Told(const std::string& acts) {
    const UiDriver person(form, acts);
    desktop.ShowModal(form);
    return form.Told();
  }

  WindowsDesktop desktop;
  SampleForm form, child;
};

TEST(WindowsDesktopTest, TellsTheFormWhatAPersonDoes) {
  const struct {
    const char* acts;
    const char* told;
  } rows[] = {
      {"ab{Tab}{Esc}", "name=ab; left name; clicked cancel"},
      {"{Alt+D}1/{Enter}", "left name; date=1/; left date; clicked ok"},
      {"{Alt+D}bad{Tab}x{close}",
       "left name; date=bad; left date; date=30/12/1899; date=x; clicked cancel"},
      {"{Alt+D}bad{Enter}{Esc}", "left name; date=bad; left date; date=30/12/1899; clicked cancel"},
      {"{Alt+D}box{Tab}{wait Box}{Enter}{wait Sample דוגמה}{Esc}",
       "left name; date=box; left date; clicked cancel"},
      {"{Alt+D}bad{F5}{Esc}", "left name; date=bad; left date; date=30/12/1899; clicked cancel"},
      {"{Alt+D}1{Ctrl+S}{Esc}", "left name; date=1; left date; clicked save; clicked cancel"},
      {"{Alt+D}1{Alt+B}{Esc}", "left name; date=1; left date; clicked box; clicked cancel"},
      {"{Alt+D}1{Esc}", "left name; date=1; clicked cancel"},
      {"{Alt+B}{click box}{Esc}", "left name; clicked box; clicked box; clicked cancel"},
      {"{Alt+T}{Down}{Down}{Esc}",
       "left name; set=A; clicked set; set=B; clicked set; clicked cancel"},
      {"{Alt+T}{F4}{Down}{Down}{Enter}{Esc}", "left name; set=B; clicked set; clicked cancel"},
      {"{Alt+T}{F4}{Down}{Esc}q{Esc}", "left name; set=q; clicked cancel"},
      {"{F5}{Ctrl+S}{click cancel}",
       "left name; clicked run; left name; clicked save; left name; clicked cancel"},
      {"{click list}{close}", "left name; list=second; clicked list; clicked cancel"},
      {"{click child}{wait Child}z{Enter}{wait Sample דוגמה}{Esc}",
       "left name; clicked child; clicked cancel"},
      {"{end}", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.acts);
    Desk desk;
    EXPECT_EQ(desk.Told(row.acts), row.told);
    EXPECT_FALSE(desk.form.Visible);
    MSG message{};
    const bool ends = ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE;
    EXPECT_EQ(ends, std::string(row.acts) == "{end}");
  }
}

TEST(WindowsDesktopTest, GivesTheOwnerBackAfterARuleFailed) {
  const HWND owner = ::CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                       0, 300, 200, nullptr, nullptr, nullptr, nullptr);
  ::SetActiveWindow(owner);
  Desk desk;
  desk.child.Caption = "Child";
  desk.form.Rule(FormEvent::kChanged, "name", [&] {
    EXPECT_EQ(::GetWindow(OwnerWindow(), GW_OWNER), owner);
    EXPECT_FALSE(::IsWindowEnabled(owner));
  });
  try {
    const UiDriver in_child(desk.child, "{Alt+C}");
    desk.Told("n{Alt+C}");
    ADD_FAILURE() << "nothing failed";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.description(), "from a rule");
  }
  EXPECT_TRUE(::IsWindowEnabled(owner));
  EXPECT_EQ(::GetActiveWindow(), owner);
  EXPECT_FALSE(desk.form.Visible || desk.child.Visible);
  ::DestroyWindow(owner);
}

TEST(WindowsDesktopTest, StaysAliveWhileWorkGoesOnBesideIt) {
  Desk desk;
  std::atomic<bool> stop = false;
  std::string failure;
  MessageAnswer answer{};
  desk.form.Rule(FormEvent::kClicked, "run", [&] {
    const DWORD thread_of_windows = ::GetCurrentThreadId();
    try {
      desk.desktop.RunBeside([&] {
        EXPECT_NE(::GetCurrentThreadId(), thread_of_windows);
        answer = desk.desktop.Show(Box("Ask"));
        while (!stop) ::Sleep(1);
        throw Failure(4444, "stopped");
      });
    } catch (const Failure& stopped) {
      failure = stopped.description();
    }
  });
  desk.form.Rule(FormEvent::kClicked, "box", [&] { stop = true; });
  EXPECT_EQ(desk.Told("{F5}{wait Ask}{Alt+N}{wait Sample דוגמה}{Alt+B}{Esc}"),
            "left name; clicked run; left name; clicked box; clicked cancel");
  EXPECT_EQ(answer, MessageAnswer::kNo);
  EXPECT_EQ(failure, "stopped");
}

/// Places of the controls on the screen, by name.
std::map<std::string, RECT> PlacesOf(const Form& form, HWND window) {
  std::map<std::string, RECT> places;
  int id = kFirstControlId;
  for (const Control& control : form.Controls()) {
    if (const HWND part = ::GetDlgItem(window, id++); part != nullptr) {
      ::GetWindowRect(part, &places[control.Name]);
    }
  }
  return places;
}

TEST(WindowsDesktopTest, PlacesControlsByTheReadingDirectionAndGrowsWithTheWindow) {
  for (const bool right_to_left : {false, true}) {
    SCOPED_TRACE(right_to_left);
    SampleForm form;
    form.RightToLeft = right_to_left;
    form.Visible = true;
    FormWindow window(form, nullptr);
    window.Show();
    const auto before = PlacesOf(form, window.window());
    EXPECT_EQ(before.at("lblName").left > before.at("name").left, right_to_left);
    EXPECT_EQ(before.at("ok").left > before.at("cancel").left, right_to_left);
    RECT whole{};
    ::GetWindowRect(window.window(), &whole);
    ::SetWindowPos(window.window(), nullptr, 0, 0, whole.right - whole.left + 100,
                   whole.bottom - whole.top + 50, SWP_NOZORDER | SWP_NOMOVE);
    const auto after = PlacesOf(form, window.window());
    const auto wider = [&](const char* name) {
      const RECT &was = before.at(name), &is = after.at(name);
      return (is.right - is.left) - (was.right - was.left);
    };
    EXPECT_EQ(wider("name"), 100);
    EXPECT_EQ(wider("set"), 0);
    EXPECT_EQ(after.at("rows").bottom - after.at("rows").top,
              before.at("rows").bottom - before.at("rows").top + 50);
    RECT place{40, 30, 40 + (whole.right - whole.left) + 20, 30 + (whole.bottom - whole.top) + 10};
    ::SendMessageW(window.window(), WM_DPICHANGED, MAKEWPARAM(96, 96),
                   reinterpret_cast<LPARAM>(&place));
    ::GetWindowRect(window.window(), &whole);
    EXPECT_TRUE(::EqualRect(&whole, &place)) << "where the system wants it on another screen";
  }
}

TEST(WindowsDesktopTest, DrawsWhatIsWrongOnItsOwnColourAndWhatStandsForNothingPale) {
  SampleForm form;
  form.Visible = true;
  FormWindow window(form, nullptr);
  const HDC canvas = ::GetDC(window.window());
  const struct {
    bool error, dimmed;
    COLORREF text, back;
  } rows[] = {{true, false, RGB(0, 0, 0), RGB(0xFF, 0xC8, 0xC8)},
              {true, true, RGB(0, 0, 0), RGB(0xFF, 0xC8, 0xC8)},
              {false, true, ::GetSysColor(COLOR_GRAYTEXT), ::GetSysColor(COLOR_WINDOW)}};
  for (const auto& row : rows) {
    form.At("date").Error = row.error;
    form.At("date").Dimmed = row.dimmed;
    const int id = kFirstControlId + 7;  // of "date"
    const HWND date = ::GetDlgItem(window.window(), id);
    ASSERT_NE(::SendMessageW(window.window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(canvas),
                             reinterpret_cast<LPARAM>(date)),
              0);
    EXPECT_EQ(::GetTextColor(canvas), row.text);
    EXPECT_EQ(::GetBkColor(canvas), row.back);
  }
  ::ReleaseDC(window.window(), canvas);
}

TEST(WindowsDesktopTest, LeavesNothingBehind) {
  const auto objects = [] {
    return std::pair(::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS),
                     ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS));
  };
  const auto open_and_close = [](int times) {
    for (int i = 0; i < times; ++i) {
      SampleForm form;
      form.Visible = true;
      FormWindow window(form, nullptr);
      window.Show();
    }
  };
  open_and_close(2);
  const auto before = objects();
  open_and_close(100);
  EXPECT_EQ(objects(), before);
}

}  // namespace
}  // namespace vok::windows
