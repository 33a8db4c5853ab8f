// The file system of Windows.
//
// Paths arrive with "\" or "/" between their parts, of any length and in any script. Files are
// opened so that other programs may read, replace and delete them meanwhile. On a file system that
// cannot replace a file that is open, doing so is failure 70 and leaves the old file.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace vok::windows {

class WindowsFiles : public Files {
 public:
  bool Exists(const std::string& path) const override;
  bool IsDirectory(const std::string& path) const override;
  void Delete(const std::string& path) override;
  void CreateDirectory(const std::string& path) override;
  void Append(const std::string& path, std::string_view bytes) override;
  std::unique_ptr<FileReader> Open(const std::string& path) const override;
  std::unique_ptr<FileReplacement> Replace(const std::string& path) override;
  std::unique_ptr<ScratchFile> Scratch(const std::string& beside) override;
  Date LastModified(const std::string& path) const override;
  void ChangeDirectory(const std::string& path) override;
  std::string NativePath(const std::string& path) const override;
};

}  // namespace vok::windows
