#include "env/directories.h"

#include "env/path_root.h"

namespace vok {
namespace {

/// How much of the path is its root and is never made. A root that is longer than the path by more
/// than its closing "\" was guessed from a single letter: such a path is a relative name.
std::size_t RootLength(const Host& host, const std::string& path) {
  const auto root = GetPathRoot(host.locale, path);
  if (!root || root->size() > path.size() + 1) return 0;
  return root->size() - 1;
}

}  // namespace

void MakeDirectories(const Host& host, const std::string& path) {
  const std::size_t root = RootLength(host, path);
  for (std::size_t end = root; end < path.size();) {
    end = path.find_first_of("\\/", end + 1);
    const std::string folder = path.substr(0, end);
    if (!host.files.IsDirectory(folder)) host.files.CreateDirectory(folder);
  }
}

}  // namespace vok
