#include "system/posix/file_handle.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"

namespace vok {
namespace {

bool FolderExists(const std::string& path) {
  std::error_code ignored;
  const auto folder = std::filesystem::path(path).parent_path();
  return folder.empty() || std::filesystem::is_directory(folder, ignored);
}

/// What the failure's number does not say; "" where that is enough.
std::string AdviceOnError(int error) {
  switch (error) {
    case EISDIR:
      return "Give the name of an ordinary file.";
    case EFBIG:
      return "Raise the limit on the size of files (ulimit -f), or choose another disk.";
    case EBUSY:
      return "The system holds the file, as it does where one is mounted: choose another name.";
    default:
      return {};
  }
}

}  // namespace

int32_t FailureNumber(int error, const std::string& path) {
  namespace number = failure_number;
  switch (error) {
    case ENOENT:
      return FolderExists(path) ? number::kFileNotFound : number::kPathNotFound;
    case ENOTDIR:
      return number::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return number::kPermissionDenied;
    case EISDIR:
    case ENOTEMPTY:
      return number::kPathAccess;
    case EEXIST:
      return number::kFileExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return number::kDiskFull;
    case ENAMETOOLONG:
    case ELOOP:
    case EINVAL:
      return number::kBadFileName;
    case ENOMEM:
      return number::kOutOfMemory;
    default:
      return number::kDeviceError;
  }
}

void ThrowSystemFailure(int error, const std::string& what, const std::string& path) {
  ThrowFileFailure(FailureNumber(error, path), what, path, std::generic_category().message(error),
                   AdviceOnError(error));
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  if (this != &other) {
    Reset();
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

int FileHandle::Reset() noexcept {
  if (!IsOpen()) return 0;
  return ::close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno;
}

FileHandle OpenFile(const std::string& path, int flags, const std::string& what) {
  constexpr int kMode = 0666;  // less what the user's umask takes away
  for (;;) {
    FileHandle file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kMode));
    if (file.IsOpen()) return file;
    if (errno != EINTR) ThrowSystemFailure(errno, what, path);
  }
}

void WriteAll(const FileHandle& file, std::span<const std::byte> bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
    if (written >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      ThrowSystemFailure(errno, "write", path);
    }
  }
}

}  // namespace vok
