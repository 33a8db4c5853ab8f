// Reads the container of a workbook file from memory. Every offset and size is checked against the
// bytes that are there, every part against its check sum; encrypted, 64-bit, split and otherwise
// packed containers are refused by name. All failures are 1004.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "providers/xlsx/byte_buffer.h"

namespace vok::xlsx {

class ZipReader {
 public:
  /// `file` must outlive the reader; `path` names it in failures.
  ZipReader(std::span<const std::byte> file, std::string path);

  /// The part's expanded content.
  ByteBuffer Read(const std::string& name) const;

  struct Entry {
    uint16_t flags;
    uint16_t method;
    uint32_t crc;
    uint32_t packed;
    uint32_t expanded;
    uint32_t offset;
  };
  const std::map<std::string, Entry, std::less<>>& entries() const { return entries_; }

 private:
  [[noreturn]] void Fail(const std::string& why) const;
  std::size_t FindEnd() const;
  void ReadDirectory();
  std::size_t ReadCentral(std::size_t at, std::size_t end);
  void CheckSizes() const;
  std::string_view Packed(const std::string& name, const Entry& entry) const;

  std::string_view file_;
  std::string path_;
  std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace vok::xlsx
