#include "providers/cube/olap/storage/bytes.h"

#include "providers/cube/olap/storage/blocks.h"

namespace vok::olap {

void ByteWriter::PutText(std::string_view text) {
  Put(static_cast<uint32_t>(text.size()));
  bytes_ += text;
}

uint32_t ByteReader::GetCount(std::size_t item_bytes) {
  const auto count = Get<uint32_t>();
  if (count > rest_.size() / item_bytes) Refuse();
  return count;
}

std::string ByteReader::GetText() {
  const auto bytes = Take(Get<uint32_t>());
  std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!IsUtf8(text)) Refuse();
  return text;
}

std::span<const std::byte> ByteReader::Take(uint64_t count) {
  if (count > rest_.size()) Refuse();
  const auto size = static_cast<std::size_t>(count);
  const auto taken = rest_.first(size);
  rest_ = rest_.subspan(size);
  return taken;
}

void ByteReader::Refuse() const { throw DamagedCubeFile(file_name_, "a record is incomplete"); }

namespace {

struct Utf8Form {
  std::size_t length = 0;  // 0: no lead byte
  unsigned char second_low = 0x80;
  unsigned char second_high = 0xBF;
};

Utf8Form FormOf(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {2};
  if (lead == 0xE0) return {3, 0xA0, 0xBF};
  if (lead == 0xED) return {3, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {3};
  if (lead == 0xF0) return {4, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {4};
  if (lead == 0xF4) return {4, 0x80, 0x8F};
  return {};
}

}  // namespace

bool IsUtf8(std::string_view text) {
  const auto byte_at = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  for (std::size_t at = 0; at < text.size();) {
    if (byte_at(at) < 0x80) {
      ++at;
      continue;
    }
    const Utf8Form form = FormOf(byte_at(at));
    if (form.length == 0 || text.size() - at < form.length) return false;
    if (byte_at(at + 1) < form.second_low || byte_at(at + 1) > form.second_high) return false;
    for (std::size_t next = 2; next < form.length; ++next) {
      if ((byte_at(at + next) & 0xC0) != 0x80) return false;
    }
    at += form.length;
  }
  return true;
}

}  // namespace vok::olap
