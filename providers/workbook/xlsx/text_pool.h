// Every different text of a workbook, stored once and known by a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/byte_buffer.h"

namespace vok::xlsx {

class TextPool {
 public:
  /// The number of the text, the same for equal texts.
  uint32_t Intern(std::string_view text);

  std::string_view At(uint32_t number) const;
  /// UTF-16 units of the longest line of the text, cut at 255: how wide it shows.
  uint8_t Width(uint32_t number) const { return entries_[number].width; }
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::size_t begin;
    uint32_t size;
    uint32_t hash;
    uint8_t width;
  };

  std::size_t Slot(std::string_view text, uint32_t hash) const;
  void Rehash();

  std::string bytes_;
  std::vector<Entry> entries_;
  std::vector<uint32_t> slots_;  // number + 1, open addressing, a power of two
};

/// The order in which the cells of a file meet the texts: only texts in use get into the part.
class TextOrder {
 public:
  explicit TextOrder(const TextPool& pool) : places_(pool.size(), kNone) {}

  /// Where the text stands in the part.
  uint32_t Use(uint32_t text) {
    ++uses_;
    uint32_t& place = places_[text];
    if (place == kNone) {
      place = static_cast<uint32_t>(order_.size());
      order_.push_back(text);
    }
    return place;
  }
  const std::vector<uint32_t>& order() const { return order_; }
  uint64_t uses() const { return uses_; }

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;
  std::vector<uint32_t> places_;
  std::vector<uint32_t> order_;
  uint64_t uses_ = 0;
};

void AppendSharedStrings(ByteBuffer& xml, const TextPool& pool, const TextOrder& order);

}  // namespace vok::xlsx
