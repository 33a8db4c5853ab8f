#include "system/windows/windows_files.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"
#include "system/windows/system_error.h"
#include "system/windows/windows_clock.h"
#include "system/windows/windows_replacement.h"

namespace vok::windows {
namespace {

// A path that a call may be made with.
std::string Checked(const std::string& path) {
  CheckPathText(path);
  return NativePath(path);
}

bool HasKind(const std::string& path, bool directory) {
  if (path.empty() || path.find('\0') != std::string::npos) return false;
  const std::string native = NativePath(path);
  const DWORD attributes = ::GetFileAttributesW(WidePath(native).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    return ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == directory;
  }
  const DWORD error = ::GetLastError();
  if (error == ERROR_ACCESS_DENIED) ThrowSystemFailure(error, "look for", native);
  return false;
}

Handle OpenFile(const std::string& native, DWORD access, DWORD disposition,
                const std::string& what) {
  Handle file(::CreateFileW(WidePath(native).c_str(), access, kShareAll, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) ThrowSystemFailure(::GetLastError(), what, native);
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) ThrowNoOrdinaryFile(what, native);
  return file;
}

void ReadAt(const Handle& file, uint64_t offset, std::span<std::byte> bytes,
            const std::string& path) {
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
  while (!bytes.empty()) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (::ReadFile(file.get(), bytes.data(), wanted, &count, &place) == 0) {
      const DWORD error = ::GetLastError();
      if (error != ERROR_HANDLE_EOF) ThrowSystemFailure(error, "read", path);
    }
    if (count == 0) throw FileChanged(path);
    offset += count;
    bytes = bytes.subspan(count);
  }
}

class WindowsScratch : public ScratchFile {
 public:
  explicit WindowsScratch(std::string beside)
      : beside_(std::move(beside)),
        file_(NewTemporary(WidePath(beside_), GENERIC_READ | GENERIC_WRITE | DELETE,
                           FILE_FLAG_DELETE_ON_CLOSE, beside_, name_)) {}
  /// Reading moves the place to write at.
  void Write(std::span<const std::byte> bytes) override {
    ::SetFilePointerEx(file_.get(), LARGE_INTEGER{}, nullptr, FILE_END);
    WriteAll(file_, bytes, beside_);
  }
  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    ReadAt(file_, offset, bytes, beside_);
  }

 private:
  std::string beside_;
  std::wstring name_;
  Handle file_;
};

class WindowsReader : public FileReader {
 public:
  explicit WindowsReader(std::string path)
      : path_(std::move(path)),
        file_(OpenFile(path_, GENERIC_READ, OPEN_EXISTING, "read")),
        opened_(Status()) {}

  uint64_t Size() const override { return SizeIn(opened_); }

  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    ReadAt(file_, offset, bytes, path_);
  }

  bool HasChanged() const override {
    const BY_HANDLE_FILE_INFORMATION now = Status();
    return SizeIn(now) != SizeIn(opened_) ||
           ::CompareFileTime(&now.ftLastWriteTime, &opened_.ftLastWriteTime) != 0;
  }

 private:
  static uint64_t SizeIn(const BY_HANDLE_FILE_INFORMATION& status) {
    return uint64_t{status.nFileSizeHigh} << 32 | status.nFileSizeLow;
  }
  BY_HANDLE_FILE_INFORMATION Status() const {
    BY_HANDLE_FILE_INFORMATION status{};
    if (::GetFileInformationByHandle(file_.get(), &status) == 0) {
      ThrowSystemFailure(::GetLastError(), "read", path_);
    }
    return status;
  }

  std::string path_;
  Handle file_;
  BY_HANDLE_FILE_INFORMATION opened_;
};

}  // namespace

bool WindowsFiles::Exists(const std::string& path) const { return HasKind(path, false); }
bool WindowsFiles::IsDirectory(const std::string& path) const { return HasKind(path, true); }
std::string WindowsFiles::NativePath(const std::string& path) const {
  return windows::NativePath(path);
}

void WindowsFiles::Delete(const std::string& path) {
  const std::string native = Checked(path);
  if (::DeleteFileW(WidePath(native).c_str()) == 0) {
    ThrowSystemFailure(::GetLastError(), "delete", native);
  }
}

void WindowsFiles::CreateDirectory(const std::string& path) {
  const std::string native = Checked(path);
  if (::CreateDirectoryW(WidePath(native).c_str(), nullptr) != 0) return;
  const DWORD error = ::GetLastError();
  if (!IsDirectory(path)) ThrowSystemFailure(error, "make the folder", native);
}

void WindowsFiles::Append(const std::string& path, std::string_view bytes) {
  const std::string native = Checked(path);
  const Handle file = OpenFile(native, FILE_APPEND_DATA, OPEN_ALWAYS, "write");
  WriteAll(file, std::as_bytes(std::span(bytes.data(), bytes.size())), native);
}

std::unique_ptr<FileReader> WindowsFiles::Open(const std::string& path) const {
  return std::make_unique<WindowsReader>(Checked(path));
}

std::unique_ptr<FileReplacement> WindowsFiles::Replace(const std::string& path) {
  return std::make_unique<WindowsReplacement>(Checked(path));
}

std::unique_ptr<ScratchFile> WindowsFiles::Scratch(const std::string& beside) {
  return std::make_unique<WindowsScratch>(Checked(beside));
}

Date WindowsFiles::LastModified(const std::string& path) const {
  const std::string native = Checked(path);
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (::GetFileAttributesExW(WidePath(native).c_str(), GetFileExInfoStandard, &data) == 0) {
    ThrowSystemFailure(::GetLastError(), "read the date of", native);
  }
  SYSTEMTIME moment{};
  SYSTEMTIME local{};
  if (::FileTimeToSystemTime(&data.ftLastWriteTime, &moment) == 0 ||
      ::SystemTimeToTzSpecificLocalTime(nullptr, &moment, &local) == 0) {
    ThrowSystemFailure(::GetLastError(), "read the date of", native);
  }
  return DateOf(local);
}

void WindowsFiles::ChangeDirectory(const std::string& path) {
  const std::string native = Checked(path);
  if (::SetCurrentDirectoryW(WidePath(native).c_str()) == 0) {
    ThrowSystemFailure(::GetLastError(), "change to the folder", native);
  }
}

}  // namespace vok::windows
