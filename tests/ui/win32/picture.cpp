#include "tests/ui/win32/picture.h"

#include <algorithm>
#include <cstdlib>

#include "system/automation/ole.h"
#include "system/windows/utf16.h"
// after the system's own header
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

namespace vok::windows {
namespace {

void Save(HBITMAP picture, const std::wstring& file) {
  constexpr CLSID kPng = {
      0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
  ULONG_PTR session = 0;
  const Gdiplus::GdiplusStartupInput plain;
  Gdiplus::GdiplusStartup(&session, &plain, nullptr);
  Gdiplus::Bitmap(picture, nullptr).Save(file.c_str(), &kPng, nullptr);
  Gdiplus::GdiplusShutdown(session);
}

}  // namespace

void TakePicture(HWND window, const std::string& name) {
  const char* const folder = std::getenv("VOKCUBE_SCREENSHOTS");
  if (folder == nullptr) return;
  RECT place{};
  ::GetWindowRect(window, &place);
  const int width = place.right - place.left, height = place.bottom - place.top;
  const HDC screen = ::GetDC(nullptr);
  const HDC canvas = ::CreateCompatibleDC(screen);
  const HBITMAP picture = ::CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = ::SelectObject(canvas, picture);
  ::BitBlt(canvas, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
  ::SelectObject(canvas, before);
  Save(picture, Utf16(std::string(folder) + "/" + name + ".png"));
  ::DeleteObject(picture);
  ::DeleteDC(canvas);
  ::ReleaseDC(nullptr, screen);
}

}  // namespace vok::windows
