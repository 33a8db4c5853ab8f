#include "system/posix/posix_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"
#include "system/posix/file_handle.h"
#include "system/posix/posix_replacement.h"
#include "system/posix/system_clock.h"
#include "system/posix/temporary_file.h"

namespace vok {
namespace {

std::string Native(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// A path that a call may be made with.
std::string Checked(const std::string& path) {
  CheckPathText(path);
  return Native(path);
}

/// Whether the error says that there is nothing, and not that nobody knows.
bool MeansNothingThere(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ELOOP;
}

bool HasKind(const std::string& path, bool directory) {
  if (path.empty() || path.find('\0') != std::string::npos) return false;
  const std::string native = Native(path);
  struct stat status;
  if (::stat(native.c_str(), &status) == 0) return S_ISDIR(status.st_mode) == directory;
  if (!MeansNothingThere(errno)) ThrowSystemFailure(errno, "look for", native);
  return false;
}

struct stat StatusOf(const FileHandle& file, const std::string& path) {
  struct stat status;
  if (::fstat(file.get(), &status) != 0) ThrowSystemFailure(errno, "read", path);
  return status;
}

/// An ordinary file.
FileHandle OpenToRead(const std::string& native) {
  FileHandle file = OpenFile(native, O_RDONLY, "read");
  const struct stat status = StatusOf(file, native);
  if (S_ISDIR(status.st_mode)) ThrowSystemFailure(EISDIR, "read", native);
  if (!S_ISREG(status.st_mode)) ThrowNoOrdinaryFile("read", native);
  return file;
}

void ReadAt(const FileHandle& file, uint64_t offset, std::span<std::byte> bytes,
            const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t count =
        ::pread(file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (count == 0) throw FileChanged(path);
    if (count < 0 && errno != EINTR) ThrowSystemFailure(errno, "read", path);
    if (count < 0) continue;
    offset += static_cast<uint64_t>(count);
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

class PosixScratch : public ScratchFile {
 public:
  explicit PosixScratch(std::string beside)
      : beside_(std::move(beside)), file_(FolderOf(beside_), S_IRUSR | S_IWUSR, beside_) {}
  void Write(std::span<const std::byte> bytes) override {
    WriteAll(file_.handle(), bytes, beside_);
  }
  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    ReadAt(file_.handle(), offset, bytes, beside_);
  }

 private:
  std::string beside_;
  TemporaryFile file_;
};

class PosixReader : public FileReader {
 public:
  explicit PosixReader(std::string path)
      : path_(std::move(path)), file_(OpenToRead(path_)), opened_(StatusOf(file_, path_)) {}

  uint64_t Size() const override { return static_cast<uint64_t>(opened_.st_size); }

  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    ReadAt(file_, offset, bytes, path_);
  }

  bool HasChanged() const override {
    const struct stat now = StatusOf(file_, path_);
    return now.st_size != opened_.st_size || now.st_mtim.tv_sec != opened_.st_mtim.tv_sec ||
           now.st_mtim.tv_nsec != opened_.st_mtim.tv_nsec;
  }

 private:
  std::string path_;
  FileHandle file_;
  struct stat opened_;
};

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode : 0;
}

}  // namespace

bool PosixFiles::Exists(const std::string& path) const { return HasKind(path, false); }
bool PosixFiles::IsDirectory(const std::string& path) const { return HasKind(path, true); }
std::string PosixFiles::NativePath(const std::string& path) const { return Native(path); }

void PosixFiles::Delete(const std::string& path) {
  const std::string native = Checked(path);
  struct stat status;
  if (::stat(native.c_str(), &status) == 0 && !S_ISREG(status.st_mode) &&
      !S_ISDIR(status.st_mode)) {
    ThrowNoOrdinaryFile("delete", native);
  }
  if (::unlink(native.c_str()) != 0) ThrowSystemFailure(errno, "delete", native);
}

void PosixFiles::CreateDirectory(const std::string& path) {
  const std::string native = Checked(path);
  constexpr mode_t kMode = 0777;  // less what the user's umask takes away
  if (::mkdir(native.c_str(), kMode) == 0) return;
  const int error = errno;
  if (!IsDirectory(path)) ThrowSystemFailure(error, "make the folder", native);
}

void PosixFiles::Append(const std::string& path, std::string_view bytes) {
  const std::string native = Checked(path);
  FileHandle file = OpenFile(native, O_WRONLY | O_APPEND | O_CREAT, "write");
  WriteAll(file, std::as_bytes(std::span(bytes.data(), bytes.size())), native);
  if (const int error = file.Reset(); error != 0) ThrowSystemFailure(error, "write", native);
}

std::unique_ptr<FileReader> PosixFiles::Open(const std::string& path) const {
  return std::make_unique<PosixReader>(Checked(path));
}

std::unique_ptr<FileReplacement> PosixFiles::Replace(const std::string& path) {
  return std::make_unique<PosixReplacement>(Checked(path));
}

std::unique_ptr<ScratchFile> PosixFiles::Scratch(const std::string& beside) {
  return std::make_unique<PosixScratch>(Checked(beside));
}

Date PosixFiles::LastModified(const std::string& path) const {
  const std::string native = Checked(path);
  struct stat status;
  if (::stat(native.c_str(), &status) != 0) ThrowSystemFailure(errno, "read the date of", native);
  return LocalDate(status.st_mtime);
}

void PosixFiles::ChangeDirectory(const std::string& path) {
  const std::string native = Checked(path);
  if (::chdir(native.c_str()) != 0) ThrowSystemFailure(errno, "change to the folder", native);
}

std::string AdviceOnReaders(const std::string& native_path) {
  std::error_code ignored;
  std::filesystem::path folder = std::filesystem::absolute(native_path, ignored);
  bool readable = (ModeOf(folder) & (S_IRGRP | S_IROTH)) != 0;
  while (readable && folder.has_relative_path()) {
    folder = folder.parent_path();
    readable = (ModeOf(folder) & (S_IXGRP | S_IXOTH)) != 0;
  }
  return readable ? "chmod 600 " + native_path : "";
}

}  // namespace vok
