#include "platform/files.h"

#include <algorithm>

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

void WriteWholeFile(Files& files, const std::string& path, std::string_view bytes) {
  const auto replacement = files.Replace(path);
  replacement->Write(std::as_bytes(std::span(bytes.data(), bytes.size())));
  replacement->Commit();
}

}  // namespace vok
