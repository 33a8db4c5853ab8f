#include "providers/workbook/xlsx/text_pool.h"

#include <algorithm>
#include <functional>

#include "platform/text.h"
#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

constexpr std::size_t kMaxWidth = 255;

uint8_t WidthOf(std::string_view text) {
  std::size_t widest = 0;
  while (widest < kMaxWidth) {
    const std::size_t end = text.find('\n');
    widest = std::max(widest, Utf16Length(text.substr(0, end)));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return static_cast<uint8_t>(std::min(widest, kMaxWidth));
}

}  // namespace

std::string_view TextPool::At(uint32_t number) const {
  const Entry& entry = entries_[number];
  return std::string_view(bytes_).substr(entry.begin, entry.size);
}

std::size_t TextPool::Slot(std::string_view text, uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot] != 0) {
    const uint32_t number = slots_[slot] - 1;
    if (entries_[number].hash == hash && At(number) == text) break;
    slot = (slot + 1) & mask;
  }
  return slot;
}

void TextPool::Rehash() {
  constexpr std::size_t kFirst = 1024;
  slots_.assign(std::max(kFirst, slots_.size() * 2), 0);
  const std::size_t mask = slots_.size() - 1;
  for (uint32_t number = 0; number < entries_.size(); ++number) {
    std::size_t slot = entries_[number].hash & mask;
    while (slots_[slot] != 0) slot = (slot + 1) & mask;
    slots_[slot] = number + 1;
  }
}

uint32_t TextPool::Intern(std::string_view text) {
  if (entries_.size() * 2 >= slots_.size()) Rehash();
  const auto hash = static_cast<uint32_t>(std::hash<std::string_view>()(text));
  const std::size_t slot = Slot(text, hash);
  if (slots_[slot] == 0) {
    entries_.push_back({bytes_.size(), static_cast<uint32_t>(text.size()), hash, WidthOf(text)});
    bytes_ += text;
    slots_[slot] = static_cast<uint32_t>(entries_.size());
  }
  return slots_[slot] - 1;
}

void AppendSharedStrings(ByteBuffer& xml, const TextPool& pool, const TextOrder& order) {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" count=\""
      << std::to_string(order.uses()) << "\" uniqueCount=\"" << std::to_string(order.order().size())
      << "\">";
  for (const uint32_t number : order.order()) {
    const std::string_view text = pool.At(number);
    xml << (NeedsPreserve(text) ? "<si><t xml:space=\"preserve\">" : "<si><t>");
    AppendXmlText(xml, text);
    xml << "</t></si>";
  }
  xml << "</sst>";
}

}  // namespace vok::xlsx
