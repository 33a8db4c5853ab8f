// One open file of the operating system, and its errors as failures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vok {

/// The run-time library's number for an `errno` value about the path.
int32_t FailureNumber(int error, const std::string& path);

/// Throws the failure for an `errno` value: the run-time library's number, "Cannot <what>
/// "<path>"", the system's own words and, where there is something to do about it, what.
[[noreturn]] void ThrowSystemFailure(int error, const std::string& what, const std::string& path);

/// Owns a file descriptor; closes it.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
  FileHandle(FileHandle&& other) noexcept;
  FileHandle& operator=(FileHandle&& other) noexcept;
  ~FileHandle() { Reset(); }

  int get() const { return descriptor_; }
  bool IsOpen() const { return descriptor_ >= 0; }
  /// Closes; the system's error, or 0. A disk may report here what a write left unsaid.
  int Reset() noexcept;

 private:
  int descriptor_ = -1;
};

/// Opens with `O_CLOEXEC`, never waiting for a pipe's other end. Failures name `path`, which is a
/// native one, and say that `what` is impossible.
FileHandle OpenFile(const std::string& path, int flags, const std::string& what);

/// Writes everything. Failures name `path`.
void WriteAll(const FileHandle& file, std::span<const std::byte> bytes, const std::string& path);

}  // namespace vok
