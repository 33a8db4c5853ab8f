#include "hosts/composition/posix_module.h"

#include <dlfcn.h>

#include <filesystem>

#include "modules.h"

namespace vok {

void* FunctionOfModule(const std::string& component_folder, const char* file, const char* name,
                       const std::function<void(const std::string& why)>& fail) {
  std::string found = file;
  for (const std::string folder :
       {kModulesOfProgram, kModulesOfLibrary, kLibrariesOfProgram, "."}) {
    const std::string path = component_folder + "/" + folder + "/" + file;
    if (std::filesystem::exists(path)) found = path;
  }
  void* module = ::dlopen(found.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* function = module == nullptr ? nullptr : ::dlsym(module, name);
  if (function == nullptr) fail(::dlerror());
  return function;
}

}  // namespace vok
