#include "providers/cube/olap/build/decoded_bytes.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/utf8.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;

/// Gives a source's first bytes back to it.
class WithBeginning : public ByteSource {
 public:
  WithBeginning(std::string beginning, std::unique_ptr<ByteSource> rest)
      : beginning_(std::move(beginning)), rest_(std::move(rest)) {}

  std::size_t Read(std::span<std::byte> bytes) override {
    const std::size_t count = std::min(bytes.size(), beginning_.size());
    std::memcpy(bytes.data(), beginning_.data(), count);
    beginning_.erase(0, count);
    return count == bytes.size() ? count : count + rest_->Read(bytes.subspan(count));
  }
  double Done() const override { return rest_->Done(); }

 private:
  std::string beginning_;
  std::unique_ptr<ByteSource> rest_;
};

/// A source whose bytes are made from another's, piece by piece.
class MadeBytes : public ByteSource {
 public:
  explicit MadeBytes(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  std::size_t Read(std::span<std::byte> bytes) override {
    std::size_t count = 0;
    while (count < bytes.size()) {
      if (given_ == made_.size() && !Make()) break;
      const std::size_t taken = std::min(bytes.size() - count, made_.size() - given_);
      std::memcpy(bytes.data() + count, made_.data() + given_, taken);
      given_ += taken;
      count += taken;
    }
    return count;
  }
  double Done() const override { return source_->Done(); }

 protected:
  /// Appends some bytes to `made`; false at the end.
  virtual bool MakeMore(std::string& made) = 0;
  std::string_view ReadPiece() {
    piece_.resize(kPiece);
    piece_.resize(source_->Read(std::as_writable_bytes(std::span(piece_))));
    return piece_;
  }

 private:
  bool Make() {
    made_.clear();
    given_ = 0;
    while (made_.empty()) {
      if (!MakeMore(made_)) return !made_.empty();
    }
    return true;
  }

  std::unique_ptr<ByteSource> source_;
  std::string piece_;
  std::string made_;
  std::size_t given_ = 0;
};

std::string ReadAll(ByteSource& source) {
  std::string all;
  std::size_t count = kPiece;
  while (count == kPiece) {
    const std::size_t before = all.size();
    all.resize(before + kPiece);
    count = source.Read(std::as_writable_bytes(std::span(all).subspan(before)));
    all.resize(before + count);
  }
  return all;
}

/// The text of the first of the members that follow each other in a file, which it takes off.
std::string Unpacked(std::string_view& packed, const std::string& path) {
  const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> decompressor(
      libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
  if (!decompressor) throw std::bad_alloc();
  std::string text(4 * packed.size() + kPiece, ' ');
  for (;; text.resize(2 * text.size())) {
    std::size_t taken = 0;
    std::size_t made = 0;
    const auto result = libdeflate_gzip_decompress_ex(
        decompressor.get(), packed.data(), packed.size(), text.data(), text.size(), &taken, &made);
    if (result == LIBDEFLATE_INSUFFICIENT_SPACE) continue;
    if (result != LIBDEFLATE_SUCCESS) {
      throw BadInput(path, "it cannot be unpacked: it is damaged or cut short");
    }
    text.resize(made);
    packed.remove_prefix(taken);
    return text;
  }
}

/// All at once: the library has no other way. A packed table takes memory for its text.
class UnpackedBytes : public MadeBytes {
 public:
  UnpackedBytes(std::unique_ptr<ByteSource> source, std::string path)
      : MadeBytes(nullptr), packed_(ReadAll(*source)), rest_(packed_), path_(std::move(path)) {}
  double Done() const override {
    return 1 - static_cast<double>(rest_.size()) / static_cast<double>(packed_.size());
  }

 private:
  bool MakeMore(std::string& made) override {
    if (rest_.empty()) return false;
    made = Unpacked(rest_, path_);
    return true;
  }

  std::string packed_;
  std::string_view rest_;
  std::string path_;
};

class FromUtf16 : public MadeBytes {
 public:
  FromUtf16(std::unique_ptr<ByteSource> source, const std::string& path, bool big_end)
      : MadeBytes(std::move(source)), path_(path), big_end_(big_end) {}

 private:
  bool MakeMore(std::string& made) override {
    const std::string_view piece = ReadPiece();
    for (const char byte : piece) {
      if (!half_) {
        half_ = static_cast<unsigned char>(byte);
        continue;
      }
      const auto other = static_cast<unsigned char>(byte);
      AddUnit(big_end_ ? *half_ << 8 | other : other << 8 | *half_, made);
      half_.reset();
    }
    if (piece.empty() && (half_ || high_ != 0)) throw Torn();
    return !piece.empty();
  }

  void AddUnit(int unit, std::string& made) {
    const auto code = static_cast<char32_t>(unit);
    const bool is_low = code >= 0xDC00 && code < 0xE000;
    if (is_low != (high_ != 0)) throw Torn();
    if (code >= 0xD800 && code < 0xDC00) {
      high_ = code;
      return;
    }
    AppendUtf8(made, is_low ? 0x10000 + ((high_ - 0xD800) << 10) + (code - 0xDC00) : code);
    high_ = 0;
  }

  Failure Torn() const {
    return BadInput(path_, "it begins as UTF-16 and is not; save the file as UTF-8");
  }

  std::string path_;
  bool big_end_;
  std::optional<int> half_;
  char32_t high_ = 0;  // the first half of a character; 0: none
};

/// The first `most` bytes; they stay the first ones of `source`.
std::string Peek(std::unique_ptr<ByteSource>& source, std::size_t most) {
  std::string begin(most, ' ');
  begin.resize(source->Read(std::as_writable_bytes(std::span(begin))));
  source = std::make_unique<WithBeginning>(begin, std::move(source));
  return begin;
}

}  // namespace

std::unique_ptr<ByteSource> Decoded(std::unique_ptr<ByteSource> source, const std::string& path) {
  constexpr std::string_view kGzipMagic = "\x1F\x8B";
  if (Peek(source, kGzipMagic.size()) == kGzipMagic) {
    source = std::make_unique<UnpackedBytes>(std::move(source), path);
  }
  const std::string mark = Peek(source, 2);
  if (mark != "\xFF\xFE" && mark != "\xFE\xFF") return source;
  std::array<std::byte, 2> passed_over{};
  source->Read(passed_over);
  return std::make_unique<FromUtf16>(std::move(source), path, mark[0] == '\xFE');
}

}  // namespace vok::olap
