#include "providers/cube/olap/build/column_spool.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/storage/packed_column.h"

namespace vok::olap {
namespace {

constexpr std::size_t kRowsOfChunk = 4096;
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 20;

}  // namespace

ColumnSpool::ColumnSpool(std::shared_ptr<SpoolFile> file, std::size_t columns)
    : file_(std::move(file)), pending_(columns), chunks_(columns) {}

void ColumnSpool::Append(std::span<const std::vector<int64_t>> columns) {
  for (std::size_t index = 0; index < columns.size(); ++index) {
    auto& pending = pending_[index];
    pending.insert(pending.end(), columns[index].begin(), columns[index].end());
  }
  rows_ += columns[0].size();
  WriteChunks(pending_[0].size() / kRowsOfChunk * kRowsOfChunk);
}

void ColumnSpool::Finish() {
  WriteChunks(pending_[0].size());
  file_->file->Write(std::as_bytes(std::span(bytes_)));
  bytes_ = {};
  pending_ = {};
}

void ColumnSpool::WriteChunks(std::size_t rows) {
  for (std::size_t index = 0; index < pending_.size(); ++index) {
    auto& pending = pending_[index];
    for (std::size_t first = 0; first < rows; first += kRowsOfChunk) {
      const auto values = std::span(pending).subspan(first, std::min(kRowsOfChunk, rows - first));
      const auto [low, high] = std::minmax_element(values.begin(), values.end());
      const Chunk chunk{file_->bytes, *low, PackedWidth(*low, *high)};
      const std::string packed = Pack(values, chunk.low, chunk.width);
      chunks_[index].push_back(chunk);
      bytes_ += packed;
      file_->bytes += packed.size();
    }
    pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(rows));
  }
  if (bytes_.size() < kBytesAtOnce) return;
  file_->file->Write(std::as_bytes(std::span(bytes_)));
  bytes_.clear();
}

void ColumnSpool::Read(std::size_t column, uint64_t first, std::span<int64_t> values) const {
  while (!values.empty()) {
    const uint64_t in_chunk = first % kRowsOfChunk;
    const auto count = std::min<std::size_t>(values.size(), kRowsOfChunk - in_chunk);
    ReadChunk(chunks_[column][first / kRowsOfChunk], in_chunk, values.first(count));
    values = values.subspan(count);
    first += count;
  }
}

void ColumnSpool::ReadChunk(const Chunk& chunk, uint64_t first, std::span<int64_t> values) const {
  // Eight values take whole bytes: no others are read than those and the ones beside them.
  const uint64_t skipped = first / 8 * 8;
  const uint64_t bits = (first + values.size() - skipped) * chunk.width;
  std::vector<std::byte> bytes((bits + 7) / 8 + sizeof(uint64_t));
  const auto packed = std::span(bytes).first(bytes.size() - sizeof(uint64_t));
  if (!packed.empty()) file_->file->Read(chunk.offset + skipped * chunk.width / 8, packed);
  Unpack({bytes.data(), chunk.low, chunk.width}, first - skipped, values.size(), values.data());
}

}  // namespace vok::olap
