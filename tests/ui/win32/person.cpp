#include "tests/ui/drawn/person.h"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "drawn_desktop.h"
#include "system/automation/ole.h"
#include "system/windows/utf16.h"
// after the system's own header
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

namespace vok::test {
namespace {

constexpr int kMostLooks = 3000;
constexpr DWORD kBetweenLooks = 20;  // milliseconds
constexpr DWORD kDrawn = 800;

struct Part {
  std::string name = {};
  ControlType type = ControlType::kLabel;
  bool is_cut = false;  ///< where its text is too long
  int id = 0;
  HWND window = nullptr;
};

/// A form that is open, as its own thread left it: the person's may not look at it.
struct OpenForm {
  HWND window = nullptr;  ///< once it was seen in front
  std::vector<Part> parts = {};
};

std::mutex guard;
std::vector<OpenForm> open_forms;

/// Of the form that was opened last, when its window is in front; nullopt while another is.
std::optional<std::vector<Part>> PartsInFront() {
  const HWND front = ::GetForegroundWindow();
  const std::lock_guard lock(guard);
  if (open_forms.empty() || ::GetWindowLongPtrW(front, DWLP_USER) == 0) return std::nullopt;
  OpenForm& last = open_forms.back();
  const bool is_another = std::any_of(open_forms.begin(), open_forms.end(),
                                      [&](const OpenForm& form) { return form.window == front; });
  if (last.window == nullptr && !is_another) last.window = front;
  if (last.window != front) return std::nullopt;
  for (Part& part : last.parts) part.window = PartOf(front, part.id);
  return last.parts;
}

template <typename Condition>
Part PartWith(Condition condition) {
  for (const Part& part : PartsInFront().value_or(std::vector<Part>())) {
    if (condition(part)) return part;
  }
  return {};
}

Part PartCalled(const std::string& name) {
  return PartWith([&](const Part& part) { return part.name == name; });
}

std::string TextIn(HWND part) {
  wchar_t text[1000] = {};
  ::SendMessageW(part, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
  std::wstring read = text;
  std::erase_if(read, [](wchar_t sign) { return sign >= 0x202A && sign <= 0x202C; });
  return windows::Utf8(read);
}

/// A message box has its text in a part that no form has given a number.
BOOL CALLBACK FindText(HWND part, LPARAM found) {
  wchar_t kind[16] = {};
  ::GetClassNameW(part, kind, std::size(kind));
  auto& text = *reinterpret_cast<std::string*>(found);
  if (kind == std::wstring(L"Static")) text = TextIn(part);
  return text.empty() ? TRUE : FALSE;
}

void SendKey(WORD key, WORD letter, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = letter;
  input.ki.dwFlags = flags;
  ::SendInput(1, &input, sizeof input);
}

void Save(HBITMAP picture, const std::string& file) {
  constexpr CLSID kPng = {
      0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
  ULONG_PTR session = 0;
  const Gdiplus::GdiplusStartupInput plain;
  Gdiplus::GdiplusStartup(&session, &plain, nullptr);
  Gdiplus::Bitmap(picture, nullptr).Save(windows::Utf16(file).c_str(), &kPng, nullptr);
  Gdiplus::GdiplusShutdown(session);
}

}  // namespace

namespace front {

/// A dialog of this program's: keys that are pressed before it is in front go elsewhere.
bool IsReady() {
  const HWND window = ::GetForegroundWindow();
  if (window == nullptr || ::IsWindowEnabled(window) == FALSE) return false;
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  wchar_t kind[16] = {};
  ::GetClassNameW(window, kind, std::size(kind));
  if (process != ::GetCurrentProcessId() || kind != std::wstring(L"#32770")) return false;
  return ::GetWindowLongPtrW(window, DWLP_USER) == 0 || PartsInFront();
}

std::string Title() {
  std::string text;
  const HWND window = ::GetForegroundWindow();
  if (!PartsInFront()) ::EnumChildWindows(window, FindText, reinterpret_cast<LPARAM>(&text));
  return text.empty() ? TextIn(window) : text;
}

std::string Focus() {
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(::GetForegroundWindow(), nullptr), &thread);
  return PartWith([&](const Part& part) {
           return part.window != nullptr && (part.window == thread.hwndFocus ||
                                             ::IsChild(part.window, thread.hwndFocus) != FALSE);
         })
      .name;
}

std::string Text(const std::string& control) {
  const Part part = PartCalled(control);
  if (part.type != ControlType::kCheckBox) return TextIn(part.window);
  return std::to_string(::SendMessageW(part.window, BM_GETCHECK, 0, 0));
}

bool Shows(const std::string& control) {
  const Part part = PartCalled(control);
  return part.type == ControlType::kMenu || ::IsWindowVisible(part.window) != FALSE;
}

void Press(const std::string& keys) {
  static const std::map<std::string, WORD> kNamed = {
      {"Tab", VK_TAB}, {"Return", VK_RETURN}, {"Esc", VK_ESCAPE}, {"Down", VK_DOWN},
      {"Up", VK_UP},   {"Ctrl", VK_CONTROL},  {"Alt", VK_MENU},   {"Shift", VK_SHIFT},
      {"F1", VK_F1},   {"F4", VK_F4},         {"F5", VK_F5},      {"Space", VK_SPACE}};
  const auto plus = keys.find('+');
  const auto named = kNamed.find(keys.substr(0, plus));
  const WORD code = named != kNamed.end() ? named->second : static_cast<WORD>(keys.at(0));
  SendKey(code, 0, 0);
  if (plus != std::string::npos) Press(keys.substr(plus + 1));
  SendKey(code, 0, KEYEVENTF_KEYUP);
}

void Type(const std::string& text) {
  for (const wchar_t letter : windows::Utf16(text)) {
    SendKey(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE);
    SendKey(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

namespace {

/// Of the system's 65,536 parts of the screen the first one of that pixel.
LONG PartOfScreen(LONG pixel, int metric) {
  const LONG pixels = ::GetSystemMetrics(metric);
  return (pixel * 65536 + pixels - 1) / pixels;
}

/// Moves and clicks at once: what a busy screen tells late of an earlier move would else take the
/// hand back, to click there again.
void ClickAt(LONG x, LONG y) {
  for (const DWORD button : {DWORD{MOUSEEVENTF_LEFTDOWN}, DWORD{MOUSEEVENTF_LEFTUP}}) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = PartOfScreen(x, SM_CXSCREEN);
    input.mi.dy = PartOfScreen(y, SM_CYSCREEN);
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | button;
    ::SendInput(1, &input, sizeof input);
  }
}

}  // namespace

/// What is out of sight is scrolled to before.
void Click(const std::string& control) {
  RECT place{}, seen{};
  const auto [name, type, is_cut, id, part] = PartCalled(control);
  if (type == ControlType::kMenu) {
    ::PostMessageW(::GetForegroundWindow(), WM_COMMAND, static_cast<WPARAM>(id), 0);
    return;
  }
  const HWND panel = ::GetParent(part);
  ::GetWindowRect(panel, &seen);
  ::SendMessageW(panel, WM_VSCROLL, SB_TOP, 0);
  for (::GetWindowRect(part, &place); place.bottom > seen.bottom; ::GetWindowRect(part, &place)) {
    const LONG before = place.bottom;
    ::SendMessageW(panel, WM_VSCROLL, SB_LINEDOWN, 0);
    ::GetWindowRect(part, &place);
    if (place.bottom == before) break;
  }
  ClickAt((place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

void Scroll(const std::string& control) {
  ::SendMessageW(PartCalled(control).window, WM_HSCROLL, SB_PAGERIGHT, 0);
}

void Close() { Press("Alt+F4"); }

namespace {

/// What a caption needs besides its text, at least.
int AroundText(ControlType type) {
  constexpr int kBoxOfCheckBox = 16, kEdgesOfButton = 6;
  return type == ControlType::kCheckBox        ? kBoxOfCheckBox
         : type == ControlType::kCommandButton ? kEdgesOfButton
                                               : 0;
}

bool HoldsItsText(const Part& part) {
  const bool typed = part.type == ControlType::kTextBox && !part.is_cut;
  const bool captioned = part.type == ControlType::kLabel || part.type == ControlType::kCheckBox ||
                         part.type == ControlType::kCommandButton;
  if (!captioned && !typed) return true;
  const HDC canvas = ::GetDC(part.window);
  ::SelectObject(canvas, reinterpret_cast<HFONT>(::SendMessageW(part.window, WM_GETFONT, 0, 0)));
  RECT text{}, room{};
  ::GetClientRect(part.window, &room);
  const bool one_line = part.type != ControlType::kLabel ||
                        (::GetWindowLongPtrW(part.window, GWL_STYLE) & SS_CENTERIMAGE) != 0;
  if (!one_line) text.right = room.right;
  ::DrawTextW(canvas, windows::Utf16(TextIn(part.window)).c_str(), -1, &text,
              DT_CALCRECT | (one_line ? DT_SINGLELINE : DT_WORDBREAK));
  ::ReleaseDC(part.window, canvas);
  return text.right + AroundText(part.type) <= room.right && text.bottom <= room.bottom;
}

}  // namespace

std::string Misfits() {
  const HWND front = ::GetForegroundWindow();
  std::string misfits;
  RECT whole{}, common{};
  ::GetWindowRect(front, &whole);
  const RECT work = windows::WorkArea(front);
  ::IntersectRect(&common, &whole, &work);
  if (::EqualRect(&common, &whole) == FALSE) misfits += "the window ";
  for (const Part& part : PartsInFront().value_or(std::vector<Part>())) {
    if (::IsWindowVisible(part.window) != FALSE && !HoldsItsText(part)) misfits += part.name + " ";
  }
  int least = 0, most = 0;
  ::GetScrollRange(::GetDlgItem(front, windows::kPanelId), SB_HORZ, &least, &most);
  SCROLLINFO bar{};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_PAGE;
  ::GetScrollInfo(::GetDlgItem(front, windows::kPanelId), SB_HORZ, &bar);
  if (most > static_cast<int>(bar.nPage)) misfits += "to the side ";
  return misfits;
}

void Shoot(const std::string& file) {
  ::RedrawWindow(::GetForegroundWindow(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  ::Sleep(kDrawn);  // the screen follows
  RECT place{};
  ::GetWindowRect(::GetForegroundWindow(), &place);
  const int width = place.right - place.left, height = place.bottom - place.top;
  const HDC screen = ::GetDC(nullptr);
  const HDC canvas = ::CreateCompatibleDC(screen);
  const HBITMAP picture = ::CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = ::SelectObject(canvas, picture);
  ::BitBlt(canvas, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
  ::SelectObject(canvas, before);
  Save(picture, file);
  ::DeleteObject(picture);
  ::DeleteDC(canvas);
  ::ReleaseDC(nullptr, screen);
}

}  // namespace front

KnownForm::KnownForm(const Form& form) {
  OpenForm known;
  int id = windows::kFirstControlId;
  for (const Control& control : form.Controls()) {
    const std::string index = "(" + std::to_string(control.Index) + ")";
    known.parts.push_back({control.Name + (control.Index == kNoIndex ? "" : index), control.Type,
                           control.Path, id++});
  }
  const std::lock_guard lock(guard);
  open_forms.push_back(known);
}
KnownForm::~KnownForm() {
  const std::lock_guard lock(guard);
  open_forms.pop_back();
}

/// On a thread of its own.
class Person::AtWork {
 public:
  explicit AtWork(const std::string& script) : thread_([script] { Work(script); }) {}
  ~AtWork() { thread_.join(); }

 private:
  static void Work(const std::string& script) {
    for (const Step& step : StepsOf(script)) {
      Await(step.line, [&] { return Holds(step); });
      Do(step);
    }
    Await("close all", [] {
      const std::lock_guard lock(guard);
      return open_forms.empty();
    });
  }
  static void Await(const std::string& step, const std::function<bool()>& holds) {
    for (int look = 0; !holds(); ++look) {
      if (look == kMostLooks) GiveUp(step);
      ::Sleep(kBetweenLooks);
    }
  }
  std::thread thread_;
};

Person::Person(const std::string& script) : work_(std::make_unique<AtWork>(script)) {}
Person::~Person() = default;

}  // namespace vok::test
