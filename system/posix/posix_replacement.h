// A file in the making beside the one that it will replace.
//
// The target may be a symbolic link: the file that it leads to is replaced. Its permissions, and as
// far as the system allows its owner and its group, pass to the new file; the rights of a group
// that does not are given to nobody else. A target that the user may not write is refused although
// the rename could be done, and another user's link where anyone can make one.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "platform/files.h"
#include "system/posix/temporary_file.h"

namespace vok {

/// With the "/" at its end.
std::string FolderOf(const std::string& path);

class PosixReplacement : public FileReplacement {
 public:
  /// `path` is native. Failures: 70 for a folder or file that must not be written, 75 when a folder
  /// or device bears the name, 76 when the folder is missing.
  explicit PosixReplacement(const std::string& path);

  /// A failed write gives the whole replacement up: `Commit` then fails too.
  void Write(std::span<const std::byte> bytes) override;
  void Commit() override;

 private:
  void KeepPermissions(const struct stat& old);
  void TellUnlessSafe() const;

  std::string target_;
  std::optional<TemporaryFile> file_;
};

}  // namespace vok
