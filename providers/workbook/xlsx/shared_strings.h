// The part that holds every different text of a workbook once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/byte_buffer.h"
#include "providers/workbook/xlsx/text_pool.h"

namespace vok::xlsx {

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
