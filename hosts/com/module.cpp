#include "hosts/com/module.h"

#include <atomic>

namespace vok::windows {
namespace {

HMODULE this_module = nullptr;
std::atomic<long> holds{0};

}  // namespace

void SetModule(HMODULE module) { this_module = module; }

HMODULE ThisModule() { return this_module; }

std::wstring ModuleFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(this_module, file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) {
      file.resize(length);
      return file;
    }
    file.resize(2 * file.size());
  }
}

bool IsModuleFree() { return holds == 0; }

void HoldModule() { ++holds; }

void ReleaseModule() { --holds; }

}  // namespace vok::windows
