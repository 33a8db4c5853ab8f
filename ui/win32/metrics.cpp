#include "ui/win32/metrics.h"

#include <cmath>

#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

/// A device context of the screen with the font in it.
class Drawing {
 public:
  explicit Drawing(HFONT font)
      : context_(::GetDC(nullptr)), before_(::SelectObject(context_, font)) {}
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  ~Drawing() {
    ::SelectObject(context_, before_);
    ::ReleaseDC(nullptr, context_);
  }
  HDC get() const { return context_; }

 private:
  HDC context_;
  HGDIOBJ before_;
};

int CALLBACK Found(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

std::wstring InstalledFamily(const std::wstring& wanted) {
  bool found = false;
  LOGFONTW family{};
  family.lfCharSet = DEFAULT_CHARSET;
  wanted.copy(family.lfFaceName, LF_FACESIZE - 1);
  const HDC screen = ::GetDC(nullptr);
  ::EnumFontFamiliesExW(screen, &family, Found, reinterpret_cast<LPARAM>(&found), 0);
  ::ReleaseDC(nullptr, screen);
  if (found) return wanted;
  NONCLIENTMETRICSW system{};
  system.cbSize = sizeof system;
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof system, &system, 0);
  return system.lfMessageFont.lfFaceName;
}

HFONT Make(const Font& font, int density) {
  constexpr double kPointsPerInch = 72;
  const int height = static_cast<int>(std::lround(font.Size * density / kPointsPerInch));
  return ::CreateFontW(-height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                       InstalledFamily(Utf16(font.Name)).c_str());
}

Extent LetterOf(HFONT font) {
  constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kCount = static_cast<int>(std::size(kLetters)) - 1;
  const Drawing drawing(font);
  SIZE size{};
  ::GetTextExtentPoint32W(drawing.get(), kLetters, kCount, &size);
  TEXTMETRICW text{};
  ::GetTextMetricsW(drawing.get(), &text);
  return {(size.cx + kCount / 2) / kCount, text.tmHeight};
}

/// As it is drawn without access marks.
int PlainWidth(HDC canvas, const std::wstring& text) {
  SIZE size{};
  ::GetTextExtentPoint32W(canvas, text.c_str(), static_cast<int>(text.size()), &size);
  return size.cx;
}

/// The beginning and the end of a text, `count` signs in all; no sign of two units is cut in two.
std::wstring Ends(const std::wstring& text, std::size_t count) {
  std::size_t before = (count + 1) / 2, after = text.size() - count / 2;
  if (before > 0 && IS_HIGH_SURROGATE(text[before - 1])) --before;
  if (after < text.size() && IS_LOW_SURROGATE(text[after])) ++after;
  return text.substr(0, before) + L'\x2026' + text.substr(after);
}

}  // namespace

Metrics::Metrics(const Font& font, int density)
    : font_(Make(font, density)), density_(density), letter_(LetterOf(font_)) {}

Metrics::~Metrics() { ::DeleteObject(font_); }

int Metrics::WidthOf(const std::wstring& caption) const {
  const Drawing drawing(font_);
  RECT bounds{};
  ::DrawTextW(drawing.get(), caption.c_str(), -1, &bounds, DT_CALCRECT | DT_SINGLELINE);
  return bounds.right;
}

int Metrics::HeightOf(const std::wstring& caption, int width) const {
  const Drawing drawing(font_);
  RECT bounds{0, 0, width, 0};
  ::DrawTextW(drawing.get(), caption.c_str(), -1, &bounds,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL);
  return bounds.bottom;
}

std::wstring Metrics::Shortened(const std::wstring& text, int room) const {
  const Drawing drawing(font_);
  if (PlainWidth(drawing.get(), text) <= room) return text;
  std::size_t fits = 0, longer = text.size();
  while (fits + 1 < longer) {
    const std::size_t middle = (fits + longer) / 2;
    (PlainWidth(drawing.get(), Ends(text, middle)) <= room ? fits : longer) = middle;
  }
  return Ends(text, fits);
}

}  // namespace vok::windows
