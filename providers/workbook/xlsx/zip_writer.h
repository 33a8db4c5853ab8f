// Writes the container of a workbook file, part after part. Time stamps are fixed, so that the same
// parts give the same bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "providers/workbook/xlsx/byte_buffer.h"
#include "providers/workbook/xlsx/row_encoder.h"

namespace vok::xlsx {

/// What a part expands to, and what it takes in the container.
struct PartSize {
  uint32_t checksum = 0;
  uint64_t expanded = 0;
  uint64_t packed = 0;

  /// What follows in the same part.
  void Add(const PackedPiece& piece);
  void Add(const PartSize& next);
};

class ZipWriter {
 public:
  /// `path` names the file in failures; others are those of `file`.
  ZipWriter(FileReplacement& file, std::string path) : file_(file), path_(std::move(path)) {}

  /// A part, compressed here.
  void Add(const std::string& name, std::string_view content);
  /// A part whose compressed bytes are written next. Failure 1004 when the file grows beyond the
  /// format's limits.
  void Begin(const std::string& name, const PartSize& size);
  void Write(std::string_view bytes);
  /// Nothing can be added afterwards.
  void Finish();

 private:
  struct Entry {
    std::string name;
    PartSize size;
    uint64_t offset;
  };

  void AppendCentral(const Entry& entry);
  void Flush();

  FileReplacement& file_;
  std::string path_;
  ByteBuffer held_;  // of what comes after `written_`
  uint64_t written_ = 0;
  uint64_t expanded_ = 0;
  std::vector<Entry> entries_;
};

}  // namespace vok::xlsx
