// Writes the container of a workbook file into memory. Time stamps are fixed, so that the same
// parts give the same bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/byte_buffer.h"

struct libdeflate_compressor;

namespace vok::xlsx {

class ZipWriter {
 public:
  /// `path` names the file in failures.
  explicit ZipWriter(std::string path);
  ~ZipWriter();

  /// Failure 1004 when the part or the file grows beyond the format's limits.
  void Add(const std::string& name, std::string_view content);
  /// The whole file. Nothing can be added afterwards.
  ByteBuffer Finish();

 private:
  struct Entry {
    std::string name;
    uint16_t method;
    uint32_t crc;
    uint32_t packed;
    uint32_t expanded;
    uint32_t offset;
  };

  std::string_view Deflate(std::string_view content);
  void AppendCentral(const Entry& entry);

  std::string path_;
  std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor_;
  ByteBuffer file_;
  ByteBuffer packed_;
  uint64_t expanded_ = 0;
  std::vector<Entry> entries_;
};

}  // namespace vok::xlsx
