#include "platform/whole_path.h"

namespace vok {

std::filesystem::path PathOfUtf8(const std::string& path) {
  return std::u8string(path.begin(), path.end());
}

std::string WholePath(const std::string& path) {
  if (path.starts_with("\\\\")) return path;  // of a share, or in a form that is taken as it is
  const std::u8string whole =
      std::filesystem::absolute(PathOfUtf8(path)).lexically_normal().u8string();
  return {whole.begin(), whole.end()};
}

}  // namespace vok
