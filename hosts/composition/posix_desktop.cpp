#include <string>

#include "hosts/composition/posix_module.h"
#include "hosts/composition/query_window.h"
#include "modules.h"
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

}  // namespace

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo& component) {
  const auto open = reinterpret_cast<OpenModule*>(
      FunctionOfModule(component.folder, kDesktopModule, kDesktopMaker, ThrowNoModule));
  return std::unique_ptr<Desktop>(open());
}

}  // namespace vok
