// The file system of POSIX.
//
// Paths arrive with "\" between their parts; here alone they turn into native ones, by turning
// every
// "\" into "/".
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace vok {

class PosixFiles : public Files {
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

/// What to do so that nobody but its owner can read the file; "" when nobody else can, or there is
/// no such file.
std::string AdviceOnReaders(const std::string& native_path);

}  // namespace vok
