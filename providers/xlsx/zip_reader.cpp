#include "providers/xlsx/zip_reader.h"

#include <libdeflate.h>

#include <memory>
#include <new>

#include "platform/failure.h"
#include "providers/xlsx/zip_format.h"

namespace vok::xlsx {
namespace {

constexpr std::string_view kCompoundFile = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr uint32_t kIs64Bit = 0xFFFFFFFF;

uint32_t Number(std::string_view bytes, std::size_t at, std::size_t size) {
  uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) {
    value |= static_cast<uint32_t>(static_cast<uint8_t>(bytes[at + i])) << (8 * i);
  }
  return value;
}
uint16_t U16(std::string_view bytes, std::size_t at) {
  return static_cast<uint16_t>(Number(bytes, at, 2));
}
uint32_t U32(std::string_view bytes, std::size_t at) { return Number(bytes, at, 4); }

}  // namespace

ZipReader::ZipReader(std::span<const std::byte> file, std::string path)
    : file_(reinterpret_cast<const char*>(file.data()), file.size()), path_(std::move(path)) {
  if (file_.starts_with(kCompoundFile)) {
    Fail("it is protected by a password or of the old .xls kind; save it as .xlsx without one");
  }
  ReadDirectory();
  CheckSizes();
}

void ZipReader::Fail(const std::string& why) const {
  throw Failure(failure_number::kAutomation,
                "The workbook \"" + path_ + "\" cannot be opened: " + why + ".");
}

std::size_t ZipReader::FindEnd() const {
  if (file_.size() >= zip::kEndSize) {
    const std::size_t last = file_.size() - zip::kEndSize;
    const std::size_t first = last > zip::kMaxComment ? last - zip::kMaxComment : 0;
    for (std::size_t at = last + 1; at-- > first;) {
      if (U32(file_, at) == zip::kEndSignature) return at;
    }
  }
  Fail("it is no .xlsx file, or its end is missing; restore it from a copy");
}

void ZipReader::ReadDirectory() {
  const std::size_t end = FindEnd();
  const std::size_t count = U16(file_, end + 10);
  const std::size_t offset = U32(file_, end + 16);
  if (offset == kIs64Bit) Fail("it is packed in the 64-bit form, which is not supported");
  if (U16(file_, end + 4) != 0 || U16(file_, end + 8) != count) {
    Fail("it is split over several volumes");
  }
  if (count > zip::kMaxEntries) {
    Fail("it has " + std::to_string(count) + " parts, more than " +
         std::to_string(zip::kMaxEntries));
  }
  if (offset > end) Fail("its directory is damaged; restore it from a copy");
  std::size_t at = offset;
  for (std::size_t i = 0; i < count; ++i) at = ReadCentral(at, end);
  if (at != end || U32(file_, end + 12) != end - offset) {
    Fail("its directory is damaged; restore it from a copy");
  }
}

std::size_t ZipReader::ReadCentral(std::size_t at, std::size_t end) {
  const auto check = [&](bool good) {
    if (!good) Fail("its directory is damaged; restore it from a copy");
  };
  check(end - at >= zip::kCentralSize && U32(file_, at) == zip::kCentralSignature);
  const std::size_t name_size = U16(file_, at + 28);
  const std::size_t size =
      zip::kCentralSize + name_size + U16(file_, at + 30) + U16(file_, at + 32);
  check(end - at >= size);
  const Entry entry{U16(file_, at + 8),  U16(file_, at + 10), U32(file_, at + 16),
                    U32(file_, at + 20), U32(file_, at + 24), U32(file_, at + 42)};
  const std::string name(file_.substr(at + zip::kCentralSize, name_size));
  check(entries_.emplace(name, entry).second);
  return at + size;
}

void ZipReader::CheckSizes() const {
  uint64_t expanded = 0;
  for (const auto& [name, entry] : entries_) {
    const std::string part = "its part \"" + name + "\" ";
    if ((entry.flags & zip::kEncrypted) != 0) {
      Fail(part + "is encrypted; save it without a password");
    }
    if (entry.packed == kIs64Bit || entry.expanded == kIs64Bit || entry.offset == kIs64Bit) {
      Fail(part + "is packed in the 64-bit form, which is not supported");
    }
    if (entry.method != zip::kStored && entry.method != zip::kDeflated) {
      Fail(part + "is packed by method " + std::to_string(entry.method) +
           ", which is not supported");
    }
    expanded += entry.expanded;
    if (expanded > zip::kMaxExpanded || !zip::IsBelievable(entry.packed, entry.expanded)) {
      Fail(part + "would expand to " + std::to_string(entry.expanded) +
           " bytes, more than is believed");
    }
  }
}

std::string_view ZipReader::Packed(const std::string& name, const Entry& entry) const {
  const auto check = [&](bool good) {
    if (!good) Fail("its part \"" + name + "\" is damaged; restore it from a copy");
  };
  check(file_.size() >= zip::kLocalSize && entry.offset <= file_.size() - zip::kLocalSize);
  check(U32(file_, entry.offset) == zip::kLocalSignature);
  const std::size_t name_size = U16(file_, entry.offset + 26);
  const std::size_t begin =
      entry.offset + zip::kLocalSize + name_size + U16(file_, entry.offset + 28);
  check(begin <= file_.size() && entry.packed <= file_.size() - begin);
  check(file_.substr(entry.offset + zip::kLocalSize, name_size) == name);
  return file_.substr(begin, entry.packed);
}

ByteBuffer ZipReader::Read(const std::string& name) const {
  const auto found = entries_.find(name);
  if (found == entries_.end()) Fail("its part \"" + name + "\" is missing");
  const Entry& entry = found->second;
  const std::string_view packed = Packed(name, entry);
  ByteBuffer content;
  bool good = true;
  if (entry.method == zip::kStored) {
    content.Append(packed);
  } else {
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> expander(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!expander) throw std::bad_alloc();
    good = libdeflate_deflate_decompress(expander.get(), packed.data(), packed.size(),
                                         content.Reserve(entry.expanded), entry.expanded,
                                         nullptr) == LIBDEFLATE_SUCCESS;
    content.Advance(entry.expanded);
  }
  if (!good || content.size() != entry.expanded ||
      libdeflate_crc32(0, content.data(), content.size()) != entry.crc) {
    Fail("its part \"" + name + "\" is damaged; restore it from a copy");
  }
  return content;
}

}  // namespace vok::xlsx
