// A growing run of bytes that is not zeroed before it is written: the parts of a workbook are built
// here, and the file itself.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace vok::xlsx {

class ByteBuffer {
 public:
  /// Room for `count` more bytes; write there, then say how far with `Advance`.
  char* Reserve(std::size_t count) {
    if (count > capacity_ - size_) Grow(count);
    return data_.get() + size_;
  }
  void Advance(std::size_t count) { size_ += count; }
  /// Drops what stands from `size` on; the memory stays.
  void Resize(std::size_t size) { size_ = size; }
  /// Up to where a writer came that began at `Reserve`'s answer.
  void AdvanceTo(const char* end) { size_ = static_cast<std::size_t>(end - data_.get()); }

  void Append(std::string_view bytes) {
    if (bytes.empty()) return;
    std::memcpy(Reserve(bytes.size()), bytes.data(), bytes.size());
    size_ += bytes.size();
  }
  ByteBuffer& operator<<(std::string_view bytes) {
    Append(bytes);
    return *this;
  }

  std::string_view View() const { return {data_.get(), size_}; }
  const char* data() const { return data_.get(); }
  std::size_t size() const { return size_; }

 private:
  struct Free {
    void operator()(char* data) const { std::free(data); }
  };

  void Grow(std::size_t count) {
    constexpr std::size_t kFirst = 4096;
    const std::size_t wanted = size_ + count;
    const std::size_t larger = wanted > 2 * capacity_ ? wanted + kFirst : 2 * capacity_;
    char* grown = static_cast<char*>(std::realloc(data_.get(), larger));
    if (grown == nullptr) throw std::bad_alloc();
    [[maybe_unused]] char* moved = data_.release();
    data_.reset(grown);
    capacity_ = larger;
  }

  std::unique_ptr<char, Free> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace vok::xlsx
