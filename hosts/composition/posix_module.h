// Parts of the component that lie in modules of their own and are loaded when they are first
// needed: what few runs need costs the others nothing.
#pragma once

#include <functional>
#include <string>

namespace vok {

/// The function `name` of the module `file`, which lies beside the component, where modules are
/// installed or built, or where the system finds it; it stays loaded. `fail` throws, given why.
void* FunctionOfModule(const std::string& component_folder, const char* file, const char* name,
                       const std::function<void(const std::string& why)>& fail);

}  // namespace vok
