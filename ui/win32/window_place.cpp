#include "ui/win32/window_place.h"

#include <algorithm>
#include <sstream>

#include "system/windows/utf16.h"
#include "ui/win32/dpi_and_theme.h"

namespace vok::windows {
namespace {

constexpr wchar_t kKept[] = L"Software\\VokCubeQ17\\Windows";

WINDOWPLACEMENT PlacementOf(HWND window) {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  ::GetWindowPlacement(window, &placement);
  return placement;
}

/// No larger than the screen.
void Shrink(HWND window) {
  const RECT work = WorkArea(window);
  RECT own{};
  ::GetWindowRect(window, &own);
  ::SetWindowPos(window, nullptr, 0, 0, std::min(own.right - own.left, work.right - work.left),
                 std::min(own.bottom - own.top, work.bottom - work.top),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void KeepText(const std::string& name, const std::string& text) {
  const std::wstring value = Utf16(text);
  ::RegSetKeyValueW(HKEY_CURRENT_USER, kKept, Utf16(name).c_str(), REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

std::string KeptText(const std::string& name) {
  std::wstring value(32768, L'\0');
  auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
  const LSTATUS read = ::RegGetValueW(HKEY_CURRENT_USER, kKept, Utf16(name).c_str(), RRF_RT_REG_SZ,
                                      nullptr, value.data(), &size);
  return read == ERROR_SUCCESS ? Utf8(value.c_str()) : std::string();
}

RECT WorkArea(HWND window) {
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  ::GetMonitorInfoW(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &screen);
  return screen.rcWork;
}

void PlaceAmid(HWND window, const RECT& area) {
  const RECT work = WorkArea(window);
  RECT own{};
  ::GetWindowRect(window, &own);
  const auto inside = [](LONG middle, LONG size, LONG begin, LONG end) {
    return static_cast<int>(std::max(begin, std::min(middle - size / 2, end - size)));
  };
  ::SetWindowPos(window, nullptr,
                 inside((area.left + area.right) / 2, own.right - own.left, work.left, work.right),
                 inside((area.top + area.bottom) / 2, own.bottom - own.top, work.top, work.bottom),
                 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void RememberPlace(const std::string& form, HWND window, const RememberedPlace& place) {
  const RECT at = PlacementOf(window).rcNormalPosition;
  std::ostringstream text;
  text << at.left << ' ' << at.top << ' ' << at.right - at.left << ' ' << at.bottom - at.top << ' '
       << DensityOf(window) << ' ' << place.maximized << ' ' << place.split;
  KeepText(form, text.str());
}

bool RecallPlace(const std::string& form, HWND window, RememberedPlace& place) {
  std::istringstream text(KeptText(form));
  int left = 0, top = 0, width = 0, height = 0, density = 0;
  text >> left >> top >> width >> height >> density >> place.maximized >> place.split;
  if (!text || density <= 0 || width <= 0 || height <= 0) return false;
  const auto scaled = [&](int length) { return ::MulDiv(length, DensityOf(window), density); };
  WINDOWPLACEMENT placement = PlacementOf(window);
  placement.showCmd = SW_HIDE;
  placement.rcNormalPosition = {left, top, left + scaled(width), top + scaled(height)};
  ::SetWindowPlacement(window, &placement);
  place.split = scaled(place.split);
  Shrink(window);
  RECT own{};
  ::GetWindowRect(window, &own);
  PlaceAmid(window, own);
  return true;
}

}  // namespace vok::windows
