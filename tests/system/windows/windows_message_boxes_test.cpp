#include "system/windows/windows_message_boxes.h"

#include <gtest/gtest.h>

#include <thread>

#include "shown_box.h"
#include "system/windows/system_header.h"
#include "system/windows/utf16.h"

namespace vok::windows {

Seen Press(const std::wstring& title, int button) {
  constexpr int kMostLooks = 600;
  constexpr int kTextOfBox = 0xFFFF;
  for (int look = 0; look < kMostLooks; ++look) {
    const HWND box = ::FindWindowW(L"#32770", title.c_str());
    if (box != nullptr && ::IsWindowVisible(box) != FALSE) {
      wchar_t text[1000] = L"";
      ::GetDlgItemTextW(box, kTextOfBox, text, 1000);
      Seen seen{text, ::GetDlgItem(box, IDHELP) != nullptr};
      for (const int id : {IDOK, IDCANCEL, IDYES, IDNO}) {
        const HWND part = ::GetDlgItem(box, id);
        const LONG_PTR type = part == nullptr ? 0 : ::GetWindowLongPtrW(part, GWL_STYLE) & 0xF;
        if (type == BS_DEFPUSHBUTTON) seen.default_button = id;
      }
      ::PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
      return seen;
    }
    ::Sleep(50);
  }
  return {};
}

namespace {

TEST(WindowsMessageBoxes, ShowWhatTheyAreGivenAndTellTheButton) {
  const struct {
    vok::MessageBox box;
    int button;
    MessageAnswer answer;
    bool help;
    int default_button;
  } rows[] = {
      {{"Error : 1111", "Report א", MessageIcon::kCritical, MessageButtons::kOk, "", 0},
       IDOK,
       MessageAnswer::kOk,
       false,
       IDOK},
      {{"Удалить?", "", MessageIcon::kQuestion, MessageButtons::kYesNo, "", 0},
       IDNO,
       MessageAnswer::kNo,
       false,
       IDNO},
      {{"Save?", "Save", MessageIcon::kExclamation, MessageButtons::kYesNoCancel, "a.chm", 7},
       IDCANCEL,
       MessageAnswer::kCancel,
       true,
       IDYES},
      {{"Go?", "Go", MessageIcon::kInformation, MessageButtons::kYesNo, "", 0},
       IDYES,
       MessageAnswer::kYes,
       false,
       IDNO},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.box.text);
    const std::wstring title = Utf16(row.box.title.empty() ? "VokCubeQ17" : row.box.title);
    Seen seen;
    std::thread user([&] { seen = Press(title, row.button); });
    EXPECT_EQ(WindowsMessageBoxes().Show(row.box), row.answer);
    user.join();
    EXPECT_EQ(Utf8(seen.text), row.box.text);
    EXPECT_EQ(seen.help, row.help);
    EXPECT_EQ(seen.default_button, row.default_button);
  }
}

}  // namespace
}  // namespace vok::windows
