// Reading and writing the small records of a cube file: numbers little-endian, texts with a length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace vok::olap {

class ByteWriter {
 public:
  template <typename T>
  requires std::is_trivially_copyable_v<T>
  void Put(T value) { bytes_.append(reinterpret_cast<const char*>(&value), sizeof(T)); }
  template <typename T>
  void PutAll(std::span<const T> values) {
    bytes_.append(reinterpret_cast<const char*>(values.data()), values.size_bytes());
  }
  void PutText(std::string_view text);

  std::string_view bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// Failure -2147467259 ("damaged") for anything that is not there.
class ByteReader {
 public:
  ByteReader(std::span<const std::byte> bytes, const std::string& file_name)
      : rest_(bytes), file_name_(file_name) {}

  template <typename T>
  requires std::is_trivially_copyable_v<T> T Get() {
    T value;
    std::memcpy(&value, Take(sizeof(T)).data(), sizeof(T));
    return value;
  }
  /// Values in place; they lie at a multiple of their size.
  template <typename T>
  std::span<const T> GetAll(uint64_t count) {
    if (count > rest_.size() / sizeof(T)) Refuse();
    const auto size = static_cast<std::size_t>(count);
    const auto bytes = Take(size * sizeof(T));
    if (reinterpret_cast<std::uintptr_t>(bytes.data()) % alignof(T) != 0) Refuse();
    return {reinterpret_cast<const T*>(bytes.data()), size};
  }
  /// The number of items that follow, each at least `item_bytes` long.
  uint32_t GetCount(std::size_t item_bytes);
  /// UTF-8, checked.
  std::string GetText();
  std::span<const std::byte> Take(uint64_t count);
  std::span<const std::byte> rest() const { return rest_; }
  const std::string& file_name() const { return file_name_; }

 private:
  [[noreturn]] void Refuse() const;

  std::span<const std::byte> rest_;
  const std::string& file_name_;
};

}  // namespace vok::olap
