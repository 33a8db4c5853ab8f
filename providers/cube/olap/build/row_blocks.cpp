#include "providers/cube/olap/build/row_blocks.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vok::olap {
namespace {

class FileBytes : public ByteSource {
 public:
  FileBytes(std::shared_ptr<const FileReader> file, std::string path)
      : file_(std::move(file)), path_(std::move(path)) {}

  std::size_t Read(std::span<std::byte> bytes) override {
    const auto count = std::min<uint64_t>(bytes.size(), file_->Size() - position_);
    file_->Read(position_, bytes.first(static_cast<std::size_t>(count)));
    position_ += count;
    if (position_ == file_->Size() && file_->HasChanged()) throw FileChanged(path_);
    return static_cast<std::size_t>(count);
  }

  double Done() const override {
    return static_cast<double>(position_) / static_cast<double>(file_->Size());
  }

 private:
  std::shared_ptr<const FileReader> file_;
  std::string path_;
  uint64_t position_ = 0;
};

uint64_t CountOf(char letter, std::string_view text) {
  return static_cast<uint64_t>(std::count(text.begin(), text.end(), letter));
}

/// Where the last row ends that ends within the text, which has `quotes` quotes; 0: none does.
std::size_t LastRowEnd(std::string_view text, uint64_t quotes) {
  while (!text.empty()) {
    const std::size_t line_end = text.rfind('\n');
    if (line_end == std::string_view::npos) break;
    quotes -= CountOf('"', text.substr(line_end));
    if (quotes % 2 == 0) return line_end + 1;
    text = text.substr(0, line_end);
  }
  return 0;
}

}  // namespace

std::unique_ptr<ByteSource> BytesOfFile(std::shared_ptr<const FileReader> file, std::string path) {
  return std::make_unique<FileBytes>(std::move(file), std::move(path));
}

std::optional<RowBlock> RowBlocks::Next() {
  RowBlock block{std::move(rest_), next_line_, false};
  rest_.clear();
  uint64_t quotes = CountOf('"', block.text);
  std::size_t end = 0;
  while (end == 0 && !is_at_end_) {
    block.is_cut = block.text.size() > kLongestRow;
    if (block.is_cut) break;
    const std::size_t before = block.text.size();
    ReadPiece(block.text);
    quotes += CountOf('"', std::string_view(block.text).substr(before));
    end = LastRowEnd(block.text, quotes);
  }
  if (is_at_end_ || block.is_cut) end = block.text.size();
  if (end == 0) return std::nullopt;
  rest_ = block.text.substr(end);
  block.text.resize(end);
  next_line_ += CountOf('\n', block.text);
  return block;
}

void RowBlocks::ReadPiece(std::string& text) {
  constexpr std::size_t kPiece = std::size_t{2} << 20;
  const std::size_t before = text.size();
  text.resize(before + kPiece);
  const std::size_t count = source_->Read(std::as_writable_bytes(std::span(text).subspan(before)));
  text.resize(before + count);
  is_at_end_ = count < kPiece;
}

}  // namespace vok::olap
