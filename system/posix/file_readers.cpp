#include "system/posix/file_readers.h"

#include <sys/stat.h>

#include <filesystem>

namespace vok {
namespace {

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode : 0;
}

}  // namespace

std::string AdviceOnReaders(const std::string& native_path) {
  std::error_code ignored;
  std::filesystem::path folder = std::filesystem::absolute(native_path, ignored);
  bool readable = (ModeOf(folder) & (S_IRGRP | S_IROTH)) != 0;
  while (readable && folder.has_relative_path()) {
    folder = folder.parent_path();
    readable = (ModeOf(folder) & (S_IXGRP | S_IXOTH)) != 0;
  }
  return readable ? "chmod 600 " + native_path : "";
}

}  // namespace vok
