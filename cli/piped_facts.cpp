#include "cli/piped_facts.h"

#include <filesystem>
#include <span>
#include <vector>

#include "cli/command.h"
#include "platform/whole_path.h"

namespace vok::cli {
namespace {

class PipedFile : public FileReader {
 public:
  PipedFile(std::unique_ptr<ScratchFile> file, uint64_t size)
      : file_(std::move(file)), size_(size) {}
  uint64_t Size() const override { return size_; }
  void Read(uint64_t offset, std::span<std::byte> bytes) const override {
    file_->Read(offset, bytes);
  }
  bool HasChanged() const override { return false; }

 private:
  std::unique_ptr<ScratchFile> file_;
  uint64_t size_;
};

}  // namespace

std::shared_ptr<const FileReader> ReadPiped(Files& files, std::istream& input,
                                            const std::string& name, const std::string& beside) {
  if (!input) ThrowUnread(name);
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  auto file = files.Scratch(beside);
  uint64_t size = 0;
  std::vector<char> piece(kPiece);
  while (input.read(piece.data(), kPiece) || input.gcount() > 0) {
    const auto count = static_cast<std::size_t>(input.gcount());
    file->Write(std::as_bytes(std::span(piece).first(count)));
    size += count;
  }
  CheckReadToEnd(input, name);
  return std::make_shared<PipedFile>(std::move(file), size);
}

bool IsPipe(const Files& files, const std::string& path) {
  std::error_code ignored;
  const auto status = std::filesystem::status(PathOfUtf8(files.NativePath(path)), ignored);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
         !std::filesystem::is_directory(status);
}

}  // namespace vok::cli
