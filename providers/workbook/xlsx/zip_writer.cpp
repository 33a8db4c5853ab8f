#include "providers/workbook/xlsx/zip_writer.h"

#include <libdeflate.h>

#include <new>

#include "platform/failure.h"

namespace vok::xlsx {
namespace {

constexpr uint32_t kLocalSignature = 0x04034b50;
constexpr uint32_t kCentralSignature = 0x02014b50;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr uint16_t kStored = 0;
constexpr uint16_t kDeflated = 8;
/// Of all parts together, expanded.
constexpr uint64_t kMaxExpanded = uint64_t{2} << 30;
/// Readers take a part for a trap that is larger than the first and expands by more than the
/// second.
constexpr uint64_t kTrustedExpanded = uint64_t{64} << 20;
constexpr uint64_t kMaxRatio = 200;

constexpr int kLevel = 1;
constexpr uint16_t kVersion = 20;      // deflate, as of version 2.0 of the format
constexpr uint16_t kDosTime = 0;       // midnight
constexpr uint16_t kDosDate = 0x0021;  // 1 January 1980, the first day the format knows

/// Appends numbers, least significant byte first.
class Record {
 public:
  explicit Record(ByteBuffer& out) : out_(out) {}
  Record& U16(uint64_t value) { return Put(value, 2); }
  Record& U32(uint64_t value) { return Put(value, 4); }

 private:
  Record& Put(uint64_t value, std::size_t bytes) {
    char* at = out_.Reserve(bytes);
    for (std::size_t i = 0; i < bytes; ++i) at[i] = static_cast<char>(value >> (8 * i));
    out_.Advance(bytes);
    return *this;
  }

  ByteBuffer& out_;
};

bool IsBelievable(uint64_t packed, uint64_t expanded) {
  return expanded <= kTrustedExpanded || expanded / kMaxRatio <= packed;
}

}  // namespace

ZipWriter::ZipWriter(std::string path)
    : path_(std::move(path)),
      compressor_(libdeflate_alloc_compressor(kLevel), libdeflate_free_compressor) {
  if (!compressor_) throw std::bad_alloc();
}

ZipWriter::~ZipWriter() = default;

std::string_view ZipWriter::Deflate(std::string_view content) {
  const std::size_t bound = libdeflate_deflate_compress_bound(compressor_.get(), content.size());
  packed_ = ByteBuffer();
  char* out = packed_.Reserve(bound);
  const std::size_t size =
      libdeflate_deflate_compress(compressor_.get(), content.data(), content.size(), out, bound);
  packed_.Advance(size);
  return packed_.View();
}

void ZipWriter::Add(const std::string& name, std::string_view content) {
  expanded_ += content.size();
  if (expanded_ > kMaxExpanded) {
    throw Failure(failure_number::kAutomation,
                  "The workbook \"" + path_ + "\" cannot be written: with its part \"" + name +
                      "\" it grows beyond 2 GB. Split the query into several workbooks.");
  }
  std::string_view packed = Deflate(content);
  const bool stored = packed.empty() || packed.size() >= content.size() ||
                      !IsBelievable(packed.size(), content.size());
  if (stored) packed = content;
  const Entry& entry = entries_.emplace_back(
      Entry{name, stored ? kStored : kDeflated, libdeflate_crc32(0, content.data(), content.size()),
            static_cast<uint32_t>(packed.size()), static_cast<uint32_t>(content.size()),
            static_cast<uint32_t>(file_.size())});
  Record record(file_);
  record.U32(kLocalSignature).U16(kVersion).U16(0).U16(entry.method);
  record.U16(kDosTime).U16(kDosDate).U32(entry.crc).U32(entry.packed).U32(entry.expanded);
  record.U16(name.size()).U16(0);
  file_ << name << packed;
}

void ZipWriter::AppendCentral(const Entry& entry) {
  Record record(file_);
  record.U32(kCentralSignature).U16(kVersion).U16(kVersion).U16(0).U16(entry.method);
  record.U16(kDosTime).U16(kDosDate).U32(entry.crc).U32(entry.packed).U32(entry.expanded);
  record.U16(entry.name.size()).U16(0).U16(0).U16(0).U16(0).U32(0).U32(entry.offset);
  file_ << entry.name;
}

ByteBuffer ZipWriter::Finish() {
  const std::size_t directory = file_.size();
  for (const Entry& entry : entries_) AppendCentral(entry);
  const std::size_t size = file_.size() - directory;
  Record record(file_);
  record.U32(kEndSignature).U16(0).U16(0).U16(entries_.size()).U16(entries_.size());
  record.U32(size).U32(directory).U16(0);
  return std::move(file_);
}

}  // namespace vok::xlsx
