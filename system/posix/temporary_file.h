// A file in the making, under a name of its own.
//
// It is called ".vokcube-<process>-<number>.tmp" and is locked until it is closed, however the
// process ends. So one that nobody holds was left by a process that ended: the next to make one in
// that folder removes it. The lock, unlike the number in the name, is seen from other machines and
// containers.
#pragma once

#include <sys/types.h>

#include <string>

#include "system/posix/file_handle.h"

namespace vok {

struct TemporarySlot;

class TemporaryFile {
 public:
  /// `folder` is native and ends in "/". The file has `mode`, less what the user's umask takes
  /// away. Failures name `target`, for which the file is made.
  TemporaryFile(const std::string& folder, mode_t mode, const std::string& target);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { Remove(); }

  const FileHandle& handle() const { return file_; }
  /// Whether there is something to rename.
  bool IsThere() const { return !path_.empty(); }
  /// The system's error, or 0; then the file has become the target and this holds nothing.
  int RenameTo(const std::string& target) noexcept;
  void Remove() noexcept;

 private:
  void Forget() noexcept;

  std::string path_;  ///< empty when there is none to remove
  TemporarySlot* slot_ = nullptr;
  FileHandle file_;
};

/// Removes those that this process has now. For a signal handler that ends the process.
void RemoveTemporaries() noexcept;

}  // namespace vok
