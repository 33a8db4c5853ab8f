// The file system, as the system uses it.
//
// Paths are the system's own texts: UTF-8, with "\" between the parts where the rules put one.
// Turning such a text into a native path happens in this port alone. Failures carry the run-time
// library's numbers (53 not found, 70 permission denied, 75 path/file access, 76 path not found, 61
// disk full, 57 device error) and name the file and the operating system's own words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/date.h"
#include "platform/failure.h"

namespace vok {

/// A file held open and read piece by piece into memory of the caller's, also after its path was
/// given to another file. What becomes of the file meanwhile is a failure, never the process's end.
/// Safe to use from several threads.
class FileReader {
 public:
  virtual ~FileReader() = default;
  /// In bytes, when it was opened.
  virtual uint64_t Size() const = 0;
  /// Fills `bytes` from `offset` on. Failure `FileChanged` when the file ends before.
  virtual void Read(uint64_t offset, std::span<std::byte> bytes) const = 0;
  /// Whether its size or its time of modification is another one than when it was opened.
  virtual bool HasChanged() const = 0;
};

/// 75: the file was changed while it was read.
Failure FileChanged(const std::string& path);

/// Bytes in memory, which outlive the result, as a file that does not change.
std::unique_ptr<FileReader> ReaderOf(std::span<const std::byte> bytes);

/// A user's file in the making: a temporary beside the target. `Commit` flushes it to the disk and
/// renames it over the target; without `Commit` the destructor removes it. Either the old file or
/// the whole new one is there, on every path.
class FileReplacement {
 public:
  virtual ~FileReplacement() = default;
  virtual void Write(std::span<const std::byte> bytes) = 0;
  /// `FileMayNotLast` when the new file is there all the same.
  virtual void Commit() = 0;
};

/// Bytes put aside, to be read back; they go with the object.
class ScratchFile {
 public:
  virtual ~ScratchFile() = default;
  /// At the end.
  virtual void Write(std::span<const std::byte> bytes) = 0;
  /// Fills `bytes` from `offset` on, where as many were written.
  virtual void Read(uint64_t offset, std::span<std::byte> bytes) const = 0;
};

/// The new file is in its place, whole, but the system could not make sure that it is there after a
/// power cut too.
class FileMayNotLast : public Failure {
  using Failure::Failure;
};

class Files {
 public:
  virtual ~Files() = default;

  /// True for an existing file that is not a directory. Failure 70 when a folder above may not be
  /// looked into.
  virtual bool Exists(const std::string& path) const = 0;
  /// True for an existing directory. Failures are those of `Exists`.
  virtual bool IsDirectory(const std::string& path) const = 0;
  /// Failure 75 for what is neither a file nor a link to one.
  virtual void Delete(const std::string& path) = 0;
  /// One level; an existing directory is not a failure.
  virtual void CreateDirectory(const std::string& path) = 0;
  /// Adds to the end of the file, creating it if needed; the file is closed again on return.
  virtual void Append(const std::string& path, std::string_view bytes) = 0;
  virtual std::unique_ptr<FileReader> Open(const std::string& path) const = 0;
  /// Removes the temporaries in the folder that processes which were killed have left.
  virtual std::unique_ptr<FileReplacement> Replace(const std::string& path) = 0;
  /// For what memory should not hold, on the disk of the file `beside`. Files that are not on a
  /// disk put it aside in memory.
  virtual std::unique_ptr<ScratchFile> Scratch(const std::string& beside);
  /// Local time of the last modification.
  virtual Date LastModified(const std::string& path) const = 0;
  virtual void ChangeDirectory(const std::string& path) = 0;
  /// The path as the operating system takes it.
  virtual std::string NativePath(const std::string& path) const = 0;
};

/// The first `most` bytes of a file, fewer where it has fewer. Failures are those of `Files::Open`,
/// `FileChanged`, and 7 for more than memory can hold.
std::string ReadBeginning(const Files& files, const std::string& path, uint64_t most);
/// All of it; failures as above.
std::string ReadWholeFile(const Files& files, const std::string& path);

/// `Replace`, `Write` and `Commit` in one.
void WriteWholeFile(Files& files, const std::string& path, std::string_view bytes);

/// For the systems, which say these in the same words. The failure of that number, "Cannot <what>
/// "<path>"", the system's own words and, where there is something to do about it, what; `advice`
/// stands in for the usual one.
[[noreturn]] void ThrowFileFailure(int32_t number, const std::string& what, const std::string& path,
                                   const std::string& words, const std::string& advice = "");

/// 75: the path is that of a device or a pipe.
[[noreturn]] void ThrowNoOrdinaryFile(const std::string& what, const std::string& path);

/// 70: another run has claimed the path.
[[noreturn]] void ThrowClaimed(const std::string& path);

/// 5: a replacement that failed or is done is committed.
[[noreturn]] void ThrowNothingToCommit(const std::string& path);

/// 52 for a text that is not a path: the system would take one with a NUL for a shorter one.
void CheckPathText(const std::string& path);

}  // namespace vok
