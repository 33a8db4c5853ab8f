// Little-endian values out of a run of bytes, each read checked against its end.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "providers/recordset/rowset.h"

namespace vok::recordset {

class ByteReader {
 public:
  /// `name` is the file's; it and the bytes outlive the reader.
  ByteReader(std::span<const std::byte> bytes, const std::string& name)
      : bytes_(bytes), name_(&name) {}

  bool AtEnd() const { return at_ == bytes_.size(); }
  std::size_t left() const { return bytes_.size() - at_; }

  std::span<const std::byte> Take(std::size_t count) {
    if (count > left()) Throw("it ends too soon");
    const auto taken = bytes_.subspan(at_, count);
    at_ += count;
    return taken;
  }

  template <typename Number>
  Number Get() {
    Number number;
    std::memcpy(&number, Take(sizeof number).data(), sizeof number);
    return number;
  }

  std::string_view TakeText(std::size_t count) {
    const auto bytes = Take(count);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  /// A reader of the next `count` bytes alone.
  ByteReader Part(std::size_t count) { return {Take(count), *name_}; }

  [[noreturn]] void Throw(const std::string& why) const {
    ThrowUnreadable(*name_, why + " (byte " + std::to_string(at_) + ")");
  }

 private:
  std::span<const std::byte> bytes_;
  const std::string* name_;
  std::size_t at_ = 0;
};

}  // namespace vok::recordset
