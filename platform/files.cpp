#include "platform/files.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "platform/failure.h"

namespace vok {
namespace {

class BytesReader : public FileReader {
 public:
  explicit BytesReader(std::span<const std::byte> bytes) : bytes_(bytes) {}
  uint64_t Size() const override { return bytes_.size(); }
  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    const auto from = bytes_.subspan(static_cast<std::size_t>(offset), bytes.size());
    std::copy(from.begin(), from.end(), bytes.begin());
  }
  bool HasChanged() const override { return false; }

 private:
  std::span<const std::byte> bytes_;
};

class BytesScratch : public ScratchFile {
 public:
  void Write(std::span<const std::byte> bytes) override {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    BytesReader(bytes_).Read(offset, bytes);
  }

 private:
  std::vector<std::byte> bytes_;
};

const char* AdviceOn(int32_t number) {
  switch (number) {
    case failure_number::kFileNotFound:
      return "Check the name.";
    case failure_number::kPathNotFound:
      return "Check that the folder exists.";
    case failure_number::kPermissionDenied:
      return "Check the permissions of the file and its folder.";
    case failure_number::kFileExists:
      return "A file of that name is in the way: choose another name.";
    case failure_number::kDiskFull:
      return "Free space on the disk, or choose another folder.";
    default:
      return "";
  }
}

}  // namespace

Failure FileChanged(const std::string& path) {
  return Failure(failure_number::kPathAccess,
                 "Cannot read \"" + path +
                     "\": it was changed while it was read; replace it with mv, which leaves the " +
                     "old file to those who read it. Try again.");
}

std::unique_ptr<FileReader> ReaderOf(std::span<const std::byte> bytes) {
  return std::make_unique<BytesReader>(bytes);
}

std::unique_ptr<ScratchFile> Files::Scratch(const std::string&) {
  return std::make_unique<BytesScratch>();
}

std::string ReadBeginning(const Files& files, const std::string& path, uint64_t most) {
  const auto file = files.Open(path);
  const uint64_t size = std::min(most, file->Size());
  std::string text;
  if (size > text.max_size()) {
    throw Failure(failure_number::kOutOfMemory, "Cannot read \"" + path + "\": its " +
                                                    std::to_string(file->Size()) +
                                                    " bytes are more than this program can hold.");
  }
  text.resize(static_cast<std::size_t>(size));
  file->Read(0, std::as_writable_bytes(std::span(text)));
  if (file->HasChanged()) throw FileChanged(path);
  return text;
}

std::string ReadWholeFile(const Files& files, const std::string& path) {
  return ReadBeginning(files, path, std::numeric_limits<uint64_t>::max());
}

void WriteWholeFile(Files& files, const std::string& path, std::string_view bytes) {
  const auto replacement = files.Replace(path);
  replacement->Write(std::as_bytes(std::span(bytes.data(), bytes.size())));
  replacement->Commit();
}

void ThrowFileFailure(int32_t number, const std::string& what, const std::string& path,
                      const std::string& words, const std::string& advice) {
  const std::string then = advice.empty() ? AdviceOn(number) : advice;
  throw Failure(
      number, "Cannot " + what + " \"" + path + "\": " + words + (then.empty() ? "" : ". ") + then);
}

void ThrowNoOrdinaryFile(const std::string& what, const std::string& path) {
  ThrowFileFailure(failure_number::kPathAccess, what, path, "it is a device or a pipe",
                   "Give the name of an ordinary file.");
}

void ThrowClaimed(const std::string& path) {
  throw Failure(failure_number::kPermissionDenied,
                "Permission denied: another run is writing \"" + path +
                    "\" now; wait until it has ended, or choose another output path");
}

void ThrowNothingToCommit(const std::string& path) {
  ThrowFileFailure(failure_number::kInvalidCall, "write", path,
                   "its new contents were given up or are in place");
}

void CheckPathText(const std::string& path) {
  if (path.empty()) throw Failure(failure_number::kBadFileName, "Bad file name: it is empty");
  if (path.find('\0') != std::string::npos) {
    throw Failure(failure_number::kBadFileName, "Bad file name: it holds a NUL character");
  }
}

}  // namespace vok
