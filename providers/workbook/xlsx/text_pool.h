// Every different text of a workbook, stored once and known by a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

}  // namespace vok::xlsx
