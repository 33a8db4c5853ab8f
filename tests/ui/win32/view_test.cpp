// What Windows alone draws and offers.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "drawn_desktop.h"
#include "platform/failure.h"
#include "system/automation/com_ptr.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_message_boxes.h"
#include "tests/ui/drawn/person.h"
#include "tests/ui/drawn/sample_form.h"
// after the system's own header, and with the names of interfaces in this file
#include <initguid.h>
#include <oleacc.h>

namespace vok::windows {
namespace {

TEST(WindowsView, GivesTheOwnerBackAfterARuleFailed) {
  const HWND owner = ::CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                       0, 300, 200, nullptr, nullptr, nullptr, nullptr);
  ::SetActiveWindow(owner);
  test::DrawnDesktop desktop;
  test::SampleForm form;
  form.Rule(FormEvent::kClicked, "run", [&] {
    EXPECT_EQ(::GetWindow(OwnerWindow(), GW_OWNER), owner);
    EXPECT_FALSE(::IsWindowEnabled(owner));
    throw Failure(91, "from a rule");
  });
  const test::Person person("press F5");
  EXPECT_THROW(desktop.ShowModal(form), Failure);
  EXPECT_TRUE(::IsWindowEnabled(owner));
  EXPECT_EQ(::GetActiveWindow(), owner);
  ::DestroyWindow(owner);
}

TEST(WindowsView, ClosesWhenTheThreadIsToldToEndAndPassesThatOn) {
  test::DrawnDesktop desktop;
  test::SampleForm form;
  form.Rule(FormEvent::kClicked, "run", [] { ::PostQuitMessage(7); });
  const test::Person person("press F5");
  desktop.ShowModal(form);
  MSG message{};
  EXPECT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7U);
}

TEST(WindowsView, TakesCommandKeysWhereNothingHasTheFocus) {
  test::DrawnDesktop desktop;
  test::SampleForm form;
  form.Rule(FormEvent::kClicked, "box", [] { ::SetFocus(nullptr); });
  form.Rule(FormEvent::kClicked, "run", [&] { form.Visible = false; });
  const test::Person person("press Alt+B; press F5");
  desktop.ShowModal(form);
  EXPECT_EQ(form.Told(), "left name; clicked box; left box; clicked run");
}

TEST(WindowsView, StandsWhereItStoodBefore) {
  test::SampleForm form;
  form.Remembered = form.Visible = true;
  Control& beside = form.Add({.Name = "beside", .Type = ControlType::kTextBox});
  beside.Region = Region::kBeside;
  const auto place_of = [](HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    return place;
  };
  const int beside_id = kFirstControlId + static_cast<int>(form.Controls().size()) - 1;
  RECT place{90, 70, 990, 670}, split{};
  {
    FormWindow window(form, nullptr);
    window.Show();
    ::MoveWindow(window.window(), place.left, place.top, 900, 600, TRUE);
    ::SendMessageW(window.window(), kSplit, 640, 0);
    split = place_of(test::PartOf(window.window(), beside_id));
  }
  FormWindow again(form, nullptr);
  again.Show();
  const RECT now = place_of(again.window());
  const RECT split_now = place_of(test::PartOf(again.window(), beside_id));
  EXPECT_TRUE(::EqualRect(&now, &place));
  EXPECT_TRUE(::EqualRect(&split_now, &split));
  EXPECT_GT(split.left, place.left + 600);
}

TEST(WindowsView, CutsALongPathInItsMiddle) {
  const Metrics metrics({}, 96);
  const std::wstring path = L"\\\\server\\share & more\\\xD83D\xDE00\xD83D\xDE00\\sales.cub";
  EXPECT_EQ(metrics.Shortened(path, 4000), path);
  for (int room = metrics.Letters(path.size()); room > metrics.Letters(4); --room) {
    const std::wstring cut = metrics.Shortened(path, room);
    EXPECT_LE(metrics.WidthOf(cut), room);
    const std::size_t at = std::min(cut.find(L'\x2026'), cut.size() - 1);
    EXPECT_TRUE(cut == path ||
                (path.starts_with(cut.substr(0, at)) && path.ends_with(cut.substr(at + 1))));
    EXPECT_FALSE(at > 0 && IS_HIGH_SURROGATE(cut[at - 1]));
  }
}

TEST(WindowsView, AListThatIsOpenTellsOnlyWhatWasChosenFromIt) {
  const struct {
    const char *script, *told;
  } rows[] = {{"press Alt+T; press F4; press Down; press Down; press Return; see set B; press Esc",
               "left name; set=B; clicked set; clicked cancel"},
              {"press Alt+T; press F4; press Down; press Esc; type q; press Esc",
               "left name; set=q; clicked cancel"},
              {"press Alt+D; type 5/6/2009; press F4; front Calendar; press Return; "
               "see date 5. 2009; press F4; front Calendar; press Esc; front Sample; press Esc",
               "left name; date=5. 2009; clicked cancel"}};
  for (const auto& row : rows) {
    test::DrawnDesktop desktop;
    test::SampleForm form;
    const test::Person person(row.script);
    desktop.ShowModal(form);
    EXPECT_EQ(form.Told(), row.told);
  }
}

TEST(WindowsView, ReadsEachLineAsItsFirstLetterIs) {
  const struct {
    const wchar_t *text, *marked;
  } rows[] = {{L"\x5D0\x5D1 \x5D2", L"\x5D0\x5D1 \x5D2"},
              {L"12", L"12"},
              {L"&\x5D0 1", L"&\x5D0 1"},
              {L"6 \x5D0",
               L"\x202B"
               L"6 \x5D0\x202C"},
              {L"No file.\r\n\r\n\x5D0.", L"\x202ANo file.\x202C\r\n\r\n\x202B\x5D0.\x202C"}};
  for (const auto& row : rows) EXPECT_EQ(ReadByItself(row.text), row.marked);
}

/// What a screen reader calls the window; Wine knows the system's own rules for names alone.
std::string NameOf(HWND part) {
  ComPtr<IAccessible> spoken;
  ::AccessibleObjectFromWindow(part, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                               spoken.ReceiveVoid());
  VARIANT self{};
  self.vt = VT_I4;
  BSTR name = nullptr;
  if (!spoken || FAILED(spoken->get_accName(self, &name))) return {};
  const std::string text = Utf8(name);
  ::SysFreeString(name);
  return text;
}

TEST(WindowsView, ScreenReadersFindTheNamesOfFieldsAndButtons) {
  test::SampleForm form;
  form.Visible = true;
  FormWindow window(form, nullptr);
  window.Show();
  const std::map<std::string, std::string> names = {
      {"name", "Name"}, {"date", "Date"}, {"box", "Box"}, {"child", "Child"}, {"ok", "OK"}};
  int id = kFirstControlId;
  for (const Control& control : form.Controls()) {
    const HWND part = test::PartOf(window.window(), id++);
    const auto wanted = names.find(control.Name);
    if (wanted == names.end()) continue;
    EXPECT_TRUE(NameOf(part).starts_with(wanted->second)) << NameOf(part);
  }
}

/// Places of the controls on the screen, by name.
std::map<std::string, RECT> PlacesOf(const Form& form, HWND window) {
  std::map<std::string, RECT> places;
  int id = kFirstControlId;
  for (const Control& control : form.Controls()) {
    if (const HWND part = test::PartOf(window, id++); part != nullptr) {
      ::GetWindowRect(part, &places[control.Name]);
    }
  }
  return places;
}

TEST(WindowsView, PlacesControlsByTheReadingDirectionAndGrowsWithTheWindow) {
  for (const bool right_to_left : {false, true}) {
    SCOPED_TRACE(right_to_left);
    test::SampleForm form;
    form.Add({.Name = "tabs",
              .Type = ControlType::kTabStrip,
              .Items = {{.Caption = "One"}, {.Caption = "Two"}},
              .Cell = {5, 0}});
    form.Add({.Name = "bar",
              .Type = ControlType::kToolbar,
              .Items = {{.Caption = "Push"}},
              .Cell = {6, 0}});
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

/// Whether the text of the list's cell is drawn nearer to the right of the cell than to the left.
bool IsFlushRight(HWND list, int row, int column) {
  ::RedrawWindow(list, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
  RECT cell{LVIR_BOUNDS, column, 0, 0};
  ::SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&cell));
  ::InflateRect(&cell, -2, -2);  // without the grid
  const HDC canvas = ::GetDC(list);
  const bool mirrored = (::GetLayout(canvas) & LAYOUT_RTL) != 0;
  LONG first = cell.right, last = cell.left;
  for (LONG x = cell.left; x < cell.right; ++x) {
    for (LONG y = cell.top; y < cell.bottom; ++y) {
      if (::GetPixel(canvas, x, y) == ::GetSysColor(COLOR_WINDOW)) continue;
      first = std::min(first, x);
      last = std::max(last, x);
    }
  }
  ::ReleaseDC(list, canvas);
  EXPECT_LT(first, last);
  return (first - cell.left > cell.right - last) != mirrored;
}

TEST(WindowsView, FiguresAreFlushRightInEveryLanguage) {
  for (const bool right_to_left : {false, true}) {
    test::SampleForm form;
    form.RightToLeft = right_to_left;
    form.Visible = true;
    FormWindow window(form, nullptr);
    window.Show();
    const HWND rows = test::PartOf(window.window(), kFirstControlId + 15);
    for (const int row : {0, 1}) EXPECT_TRUE(IsFlushRight(rows, row, 1)) << right_to_left << row;
  }
}

TEST(WindowsView, DrawsWhatIsWrongOnItsOwnColourAndWhatStandsForNothingPale) {
  test::SampleForm form;
  form.Visible = true;
  FormWindow window(form, nullptr);
  const HDC canvas = ::GetDC(window.window());
  const struct {
    bool error, dimmed, contrast;
    COLORREF text, back;
  } rows[] = {{true, false, false, RGB(0, 0, 0), RGB(0xFF, 0xC6, 0xC6)},
              {true, true, false, RGB(0, 0, 0), RGB(0xFF, 0xC6, 0xC6)},
              {true, false, true, RGB(0xFF, 0xFF, 0xFF), RGB(0x38, 0, 0)},
              {false, true, false, ::GetSysColor(COLOR_GRAYTEXT), ::GetSysColor(COLOR_WINDOW)}};
  const INT parts[] = {COLOR_WINDOW, COLOR_WINDOWTEXT};
  const COLORREF usual[] = {::GetSysColor(COLOR_WINDOW), ::GetSysColor(COLOR_WINDOWTEXT)};
  const COLORREF contrast[] = {RGB(0, 0, 0), RGB(0xFF, 0xFF, 0xFF)};
  for (const auto& row : rows) {
    ::SetSysColors(2, parts, row.contrast ? contrast : usual);
    form.At("date").Error = row.error;
    form.At("date").Dimmed = row.dimmed;
    const int id = kFirstControlId + 7;  // of "date"
    const HWND date = test::PartOf(window.window(), id);
    ASSERT_NE(::SendMessageW(window.window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(canvas),
                             reinterpret_cast<LPARAM>(date)),
              0);
    EXPECT_EQ(::GetTextColor(canvas), row.text);
    EXPECT_EQ(::GetBkColor(canvas), row.back);
  }
  ::SetSysColors(2, parts, usual);
  ::ReleaseDC(window.window(), canvas);
}

}  // namespace
}  // namespace vok::windows
