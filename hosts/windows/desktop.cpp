#include "hosts/system/query_window.h"
#include "platform/failure.h"

namespace vok {

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo& component) {
  throw Failure(
      failure_number::kNotSupported,
      component.product_name +
          " has no windows on this system yet; settings are edited with its command line");
}

}  // namespace vok
