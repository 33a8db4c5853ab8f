// A folder of a test's own.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace vok::test {

/// A new folder that any user may write into, removed with all that is in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    if (mkdtemp(path_.data()) == nullptr) throw std::filesystem::filesystem_error(path_, {});
    std::filesystem::permissions(path_, std::filesystem::perms::all);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_ = std::filesystem::temp_directory_path() / "vokcube-XXXXXX";
};

}  // namespace vok::test
