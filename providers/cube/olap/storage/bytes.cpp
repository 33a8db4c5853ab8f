#include "providers/cube/olap/storage/bytes.h"

#include "platform/utf8.h"
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

}  // namespace vok::olap
