// A file in the making beside the one that it will replace.
//
// The target may be a symbolic link: the file that it leads to is replaced. Its permissions pass to
// the new file as far as the file system knows any. A target that the user may not write, or that a
// program holds open against writing, is refused at once.
#pragma once

#include <string>

#include "platform/files.h"
#include "system/windows/system_error.h"

namespace vok::windows {

/// Writes everything. Failures name `path`.
void WriteAll(const Handle& file, std::span<const std::byte> bytes, const std::string& path);

/// A new file in the folder of `target`, and what it is called. `flags` and `access` are the
/// system's. Failures name `path`.
Handle NewTemporary(const std::wstring& target, DWORD access, DWORD flags, const std::string& path,
                    std::wstring& name);

class WindowsReplacement : public FileReplacement {
 public:
  /// `path` is native. Failures: 70 for a folder or file that must not be written, 75 when a folder
  /// or device bears the name, 76 when the folder is missing.
  explicit WindowsReplacement(const std::string& path);
  WindowsReplacement(const WindowsReplacement&) = delete;
  WindowsReplacement& operator=(const WindowsReplacement&) = delete;
  ~WindowsReplacement() override { Discard(); }

  /// A failed write gives the whole replacement up: `Commit` then fails too.
  void Write(std::span<const std::byte> bytes) override;
  void Commit() override;

 private:
  void KeepPermissions();
  /// False with the system's error.
  bool TakePlace();
  void Discard() noexcept;

  std::string path_;        ///< as the messages name it
  std::wstring target_;     ///< the file itself, past any link
  std::wstring temporary_;  ///< empty when there is none to remove
  Handle file_;
};

}  // namespace vok::windows
