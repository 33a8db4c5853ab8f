#include <dlfcn.h>

#include <filesystem>
#include <string>

#include "desktop_module.h"
#include "hosts/composition/query_window.h"
#include "platform/failure.h"

namespace vok {
namespace {

using OpenModule = Desktop*();

[[noreturn]] void ThrowNoModule(const std::string& why) {
  throw Failure(failure_number::kNotSupported,
                std::string("No window can be shown: the module ") + kDesktopModule +
                    " cannot be loaded (" + why +
                    "). It is built where Qt 6 Widgets is found (Debian: qt6-base-dev) and lies "
                    "beside the component or in the system's library folders");
}

/// Beside the component, where a program has its libraries, or where the system finds it. It stays
/// loaded: Qt cannot be unloaded.
void* LoadModule(const std::string& folder) {
  std::string file = kDesktopModule;
  for (const std::string& place : {folder, folder + "/" + kLibrariesOfProgram}) {
    const std::string path = place + "/" + kDesktopModule;
    if (std::filesystem::exists(path)) file = path;
  }
  void* module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) ThrowNoModule(::dlerror());
  return module;
}

}  // namespace

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo& component) {
  static void* const module = LoadModule(component.folder);
  const auto open = reinterpret_cast<OpenModule*>(::dlsym(module, kDesktopMaker));
  if (open == nullptr) ThrowNoModule(::dlerror());
  return std::unique_ptr<Desktop>(open());
}

}  // namespace vok
