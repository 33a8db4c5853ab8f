#include "ui/win32/calendar.h"

#include <algorithm>
#include <utility>

#include "ui/win32/dpi_and_theme.h"
#include "ui/win32/window_place.h"

namespace vok::windows {
namespace {

struct EmptyDialog {
  DLGTEMPLATE dialog{};
  WORD menu = 0, window_class = 0, title = 0;
};

struct Picking {
  HWND field;
  std::optional<Date> date;
  HWND calendar = nullptr;
  bool ended = false;
};

void Show(HWND dialog, Picking& picking) {
  ::SetWindowTextW(dialog, L"Calendar");
  picking.calendar = ::CreateWindowExW(0, MONTHCAL_CLASSW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                                       0, 0, 0, 0, dialog, nullptr, ThisInstance(), nullptr);
  if (picking.date && !picking.date->IsZero()) {
    SYSTEMTIME day{};
    day.wYear = static_cast<WORD>(picking.date->Year());
    day.wMonth = static_cast<WORD>(picking.date->Month());
    day.wDay = static_cast<WORD>(picking.date->Day());
    ::SendMessageW(picking.calendar, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&day));
  }
  RECT size{}, field{};
  ::SendMessageW(picking.calendar, MCM_GETMINREQRECT, 0, reinterpret_cast<LPARAM>(&size));
  ::MoveWindow(picking.calendar, 0, 0, size.right, size.bottom, FALSE);
  ::GetWindowRect(picking.field, &field);
  const RECT work = WorkArea(picking.field);
  ::SetWindowPos(dialog, nullptr,
                 std::max(work.left, std::min(field.left, work.right - size.right)),
                 std::max(work.top, std::min(field.bottom, work.bottom - size.bottom)),
                 size.right + 2, size.bottom + 2, SWP_NOZORDER);
  ::SetFocus(picking.calendar);
}

/// Only once: the window that ends is told that it is not the active one any more.
void End(HWND dialog, Picking& picking, bool picked) {
  if (std::exchange(picking.ended, true)) return;
  SYSTEMTIME day{};
  picking.date.reset();
  if (picked &&
      ::SendMessageW(picking.calendar, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&day)) != FALSE) {
    picking.date = Date::FromCivil(day.wYear, day.wMonth, day.wDay);
  }
  ::EndDialog(dialog, 0);
}

/// The calendar tells of a choice for each key that moves in it, too.
bool IsMouseChoice(const NMHDR& told) {
  constexpr int kMoves[] = {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_HOME, VK_END};
  return told.code == static_cast<UINT>(MCN_SELECT) &&
         std::none_of(std::begin(kMoves), std::end(kMoves),
                      [](int key) { return ::GetKeyState(key) < 0; });
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrW(dialog, GWLP_USERDATA, lparam);
    Show(dialog, *reinterpret_cast<Picking*>(lparam));
    return FALSE;
  }
  auto* const picking = reinterpret_cast<Picking*>(::GetWindowLongPtrW(dialog, GWLP_USERDATA));
  if (picking == nullptr) return FALSE;
  if (message == WM_COMMAND) {
    End(dialog, *picking, LOWORD(wparam) == IDOK);
  } else if (message == WM_NOTIFY && IsMouseChoice(*reinterpret_cast<const NMHDR*>(lparam))) {
    End(dialog, *picking, true);
  } else if (message == WM_ACTIVATE && LOWORD(wparam) == WA_INACTIVE) {
    End(dialog, *picking, false);
  } else {
    return FALSE;
  }
  return TRUE;
}

}  // namespace

std::optional<Date> PickDate(HWND field, std::optional<Date> shown) {
  const OwnLook look;
  EmptyDialog empty;
  empty.dialog.style = WS_POPUP | WS_BORDER;
  Picking picking{field, shown};
  ::DialogBoxIndirectParamW(ThisInstance(), &empty.dialog, ::GetAncestor(field, GA_ROOT), Procedure,
                            reinterpret_cast<LPARAM>(&picking));
  ::SetFocus(field);
  return picking.ended ? picking.date : std::nullopt;
}

}  // namespace vok::windows
