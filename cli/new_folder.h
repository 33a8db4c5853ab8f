// A folder in the making: there with all of its files, or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/host.h"

namespace vok::cli {

/// Failure 58 when something of that name is there.
void CheckIsNew(const Host& host, const std::string& path);

/// Makes the folder, and those above it that are missing. What was made goes with the object
/// again, except what others have put there, unless it is kept. The host outlives it.
class NewFolder {
 public:
  /// Failures are those of `CheckIsNew` and `MakeDirectories`. `path` is whole.
  NewFolder(const Host& host, std::string path);
  NewFolder(const NewFolder&) = delete;
  NewFolder& operator=(const NewFolder&) = delete;
  ~NewFolder();

  /// Of a file in the folder, which goes with it from now on.
  std::string Path(const std::string& file);
  void Write(const std::string& file, const std::string& text);
  void Keep() { made_.clear(); }

 private:
  const Host& host_;
  std::string path_;
  std::vector<std::filesystem::path> made_;  ///< each before the one that it is in
};

}  // namespace vok::cli
