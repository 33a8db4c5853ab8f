// Texts that live together: kept in large pieces that never move, freed at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace vok::xmla {

class TextArena {
 public:
  /// A copy that lives as long as the arena, wherever the arena is moved to.
  std::string_view Add(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > left_) NewPiece(text.size());
    std::memcpy(next_, text.data(), text.size());
    const std::string_view kept(next_, text.size());
    next_ += text.size();
    left_ -= text.size();
    return kept;
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{64} << 10;  // bytes

  void NewPiece(std::size_t needed) {
    left_ = std::max(needed, kPiece);
    next_ = pieces_.emplace_back(std::make_unique_for_overwrite<char[]>(left_)).get();
  }

  std::vector<std::unique_ptr<char[]>> pieces_;
  char* next_ = nullptr;
  std::size_t left_ = 0;
};

}  // namespace vok::xmla
