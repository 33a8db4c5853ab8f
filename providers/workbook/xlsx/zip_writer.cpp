#include "providers/workbook/xlsx/zip_writer.h"

#include <span>

#include "platform/failure.h"
#include "providers/workbook/xlsx/checksum.h"

namespace vok::xlsx {
namespace {

constexpr uint32_t kLocalSignature = 0x04034b50;
constexpr uint32_t kCentralSignature = 0x02014b50;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr uint16_t kDeflated = 8;
/// Of all parts together, expanded.
constexpr uint64_t kMaxExpanded = uint64_t{2} << 30;
constexpr std::size_t kMostHeld = std::size_t{1} << 18;

constexpr uint16_t kVersion = 20;      // deflate, as of version 2.0 of the format
constexpr uint16_t kDosTime = 0;       // midnight
constexpr uint16_t kDosDate = 0x0021;  // 1 January 1980, the first day the format knows

/// Appends numbers, least significant byte first.
class Record {
 public:
  explicit Record(ByteBuffer& out) : out_(out) {}
  Record& U16(uint64_t value) { return Put(value, 2); }
  Record& U32(uint64_t value) { return Put(value, 4); }
  /// What a part's header and its entry in the directory share.
  Record& Part(const PartSize& size, const std::string& name) {
    U16(kVersion).U16(0).U16(kDeflated).U16(kDosTime).U16(kDosDate);
    return U32(size.checksum).U32(size.packed).U32(size.expanded).U16(name.size()).U16(0);
  }

 private:
  Record& Put(uint64_t value, std::size_t bytes) {
    char* at = out_.Reserve(bytes);
    for (std::size_t i = 0; i < bytes; ++i) at[i] = static_cast<char>(value >> (8 * i));
    out_.Advance(bytes);
    return *this;
  }

  ByteBuffer& out_;
};

}  // namespace

void PartSize::Add(const PackedPiece& piece) {
  Add(PartSize{piece.checksum, piece.expanded, piece.bytes.size()});
}

void PartSize::Add(const PartSize& next) {
  checksum = JoinedChecksum(checksum, next.checksum, next.expanded);
  expanded += next.expanded;
  packed += next.packed;
}

void ZipWriter::Add(const std::string& name, std::string_view content) {
  const PackedPiece piece = Pack(content, true);
  PartSize size;
  size.Add(piece);
  Begin(name, size);
  Write(piece.bytes.View());
}

void ZipWriter::Begin(const std::string& name, const PartSize& size) {
  expanded_ += size.expanded;
  if (expanded_ > kMaxExpanded) {
    throw Failure(failure_number::kAutomation,
                  "The workbook \"" + path_ + "\" cannot be written: with its part \"" + name +
                      "\" it grows beyond 2 GB. Split the query into several workbooks.");
  }
  const Entry& entry = entries_.emplace_back(Entry{name, size, written_ + held_.size()});
  Record(held_).U32(kLocalSignature).Part(entry.size, name);
  held_ << name;
}

void ZipWriter::Write(std::string_view bytes) {
  held_.Append(bytes);
  if (held_.size() >= kMostHeld) Flush();
}

void ZipWriter::Flush() {
  file_.Write(std::as_bytes(std::span(held_.data(), held_.size())));
  written_ += held_.size();
  held_.Resize(0);
}

void ZipWriter::AppendCentral(const Entry& entry) {
  Record(held_).U32(kCentralSignature).U16(kVersion).Part(entry.size, entry.name);
  Record(held_).U16(0).U16(0).U16(0).U32(0).U32(entry.offset);
  held_ << entry.name;
}

void ZipWriter::Finish() {
  const uint64_t directory = written_ + held_.size();
  for (const Entry& entry : entries_) AppendCentral(entry);
  const uint64_t size = written_ + held_.size() - directory;
  Record record(held_);
  record.U32(kEndSignature).U16(0).U16(0).U16(entries_.size()).U16(entries_.size());
  record.U32(size).U32(directory).U16(0);
  Flush();
}

}  // namespace vok::xlsx
