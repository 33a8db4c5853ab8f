#include "ui/win32/dpi_and_theme.h"

#include "system/windows/system_dll.h"
#include "system/windows/system_header.h"

namespace vok::windows {
namespace {

constexpr wchar_t kUser[] = L"user32.dll";

using SetAwareness = DPI_AWARENESS_CONTEXT(WINAPI*)(DPI_AWARENESS_CONTEXT);

DPI_AWARENESS_CONTEXT Enter(DPI_AWARENESS_CONTEXT context) {
  static const auto set = SystemFunction<SetAwareness>(kUser, "SetThreadDpiAwarenessContext");
  return set == nullptr ? nullptr : set(context);
}

}  // namespace

HINSTANCE ThisInstance() {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&ThisInstance), &module);
  return module;
}

OwnLook::OwnLook() {
  ACTCTXW manifest{};
  manifest.cbSize = sizeof manifest;
  manifest.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  manifest.hModule = ThisInstance();
  manifest.lpResourceName = MAKEINTRESOURCEW(2);  // as view.rc has it
  styles_ = ::CreateActCtxW(&manifest);
  active_ = styles_ != INVALID_HANDLE_VALUE && ::ActivateActCtx(styles_, &cookie_) != FALSE;
  awareness_ = Enter(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
  const INITCOMMONCONTROLSEX kinds{sizeof kinds, ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS |
                                                     ICC_TAB_CLASSES | ICC_BAR_CLASSES |
                                                     ICC_DATE_CLASSES};
  ::InitCommonControlsEx(&kinds);
}

OwnLook::~OwnLook() {
  if (awareness_ != nullptr) Enter(awareness_);
  if (active_) ::DeactivateActCtx(0, cookie_);
  if (styles_ != INVALID_HANDLE_VALUE) ::ReleaseActCtx(styles_);
}

int DensityOf(HWND window) {
  static const auto density = SystemFunction<UINT(WINAPI*)(HWND)>(kUser, "GetDpiForWindow");
  if (density != nullptr) return static_cast<int>(density(window));
  const HDC screen = ::GetDC(nullptr);
  const int dots = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  return dots;
}

void HandleDensityOurselves(HWND dialog) {
  constexpr int kNothingBySystem = 1;  // DDC_DISABLE_ALL
  static const auto set =
      SystemFunction<BOOL(WINAPI*)(HWND, int, int)>(kUser, "SetDialogDpiChangeBehavior");
  if (set != nullptr) set(dialog, kNothingBySystem, kNothingBySystem);
}

}  // namespace vok::windows
