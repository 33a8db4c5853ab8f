#include <filesystem>
#include <utility>

#include "hosts/composition/provider_choice.h"
#include "hosts/composition/system_platform.h"
#include "providers/http/winhttp/winhttp_transport.h"
#include "system/windows/file_readers.h"
#include "system/windows/system_header.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_clock.h"
#include "system/windows/windows_files.h"
#include "system/windows/windows_locale.h"
#include "system/windows/windows_registry.h"

namespace vok {
namespace {

/// The DLL's, or the program's.
std::string ComponentFolder() {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&ComponentFolder), &module);
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return windows::Utf8(std::filesystem::path(path).parent_path().wstring());
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

SystemPlatform NewSystemPlatform() {
  SystemPlatform platform;
  platform.files = std::make_unique<windows::WindowsFiles>();
  platform.locale = std::make_unique<windows::WindowsLocale>();
  platform.registry = std::make_unique<windows::WindowsRegistry>();
  platform.clock = std::make_unique<windows::WindowsClock>();
  platform.transport = NewTransport<windows::WinHttpTransport>();
  platform.advice_on_readers = windows::AdviceOnReaders;
  platform.component_folder = ComponentFolder();
  return platform;
}

std::unique_ptr<Database> SystemDatabase(const Files& files, std::unique_ptr<Database> portable) {
  return std::make_unique<windows::ChosenDatabase>(files, std::move(portable));
}

std::unique_ptr<CubeProvider> SystemCube(const Files& files, const Locale& locale,
                                         std::unique_ptr<CubeProvider> portable) {
  return std::make_unique<windows::CubeChoice>(files, locale, std::move(portable));
}

}  // namespace vok
