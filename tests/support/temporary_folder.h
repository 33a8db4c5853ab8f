// A folder for the files of one test.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace vok::test {

/// A new folder that any user may write into, removed with all that is in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = (std::filesystem::temp_directory_path() / ("vokcube-" + std::to_string(random())))
                  .string();
    } while (!std::filesystem::create_directory(path_));
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
  std::string path_;
};

}  // namespace vok::test
