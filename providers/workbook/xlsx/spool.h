// Bytes in the order they came: the first of them in memory, and where there are many, all of them
// put aside on the disk.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "providers/workbook/xlsx/byte_buffer.h"

namespace vok::xlsx {

class Spool {
 public:
  /// `files` outlives this. What goes to the disk stands beside `path`.
  Spool(Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  /// Failures are those of the files port.
  void Append(std::string_view bytes);
  /// Hands the first `size` bytes on, piece by piece.
  template <typename Sink>
  void ReadTo(uint64_t size, const Sink& sink) const {
    ByteBuffer piece;
    for (uint64_t at = 0; at < on_disk_ && at < size;) {
      const auto count =
          static_cast<std::size_t>(std::min<uint64_t>(kPiece, std::min(on_disk_, size) - at));
      char* memory = piece.Reserve(count);
      file_->Read(at, std::as_writable_bytes(std::span(memory, count)));
      sink(std::string_view(memory, count));
      at += count;
    }
    if (size > on_disk_) sink(held_.View().substr(0, static_cast<std::size_t>(size - on_disk_)));
  }

 private:
  static constexpr std::size_t kMostHeld = std::size_t{1} << 20;
  static constexpr std::size_t kPiece = std::size_t{1} << 20;

  Files& files_;
  std::string path_;
  std::unique_ptr<ScratchFile> file_;
  uint64_t on_disk_ = 0;
  ByteBuffer held_;  // what follows
};

}  // namespace vok::xlsx
