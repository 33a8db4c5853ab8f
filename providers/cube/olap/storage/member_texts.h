// Names and captions of a hierarchy's members, read from the cube file where they are asked for.
#pragma once

#include <cstdint>
#include <string_view>

#include "providers/cube/olap/storage/paged_block.h"

namespace vok::olap {

/// One of the two, of one member after the other. Failures are those of `PagedBlock`, which
/// outlives it.
class TextReader {
 public:
  /// In the block: where the places of the texts begin, one for each member and one more, and the
  /// texts that these are counted in.
  TextReader(const PagedBlock& block, uint64_t places, uint64_t texts)
      : places_begin_(places), texts_begin_(texts), places_(block), texts_(block) {}

  /// Lasts until the next call.
  std::string_view operator[](uint64_t member) {
    const uint64_t begin = PlaceOf(member);
    return texts_.Text(texts_begin_ + begin, PlaceOf(member + 1) - begin);
  }
  /// Where its text begins.
  uint64_t PlaceOf(uint64_t member) {
    return places_.Get<uint64_t>(places_begin_ + member * sizeof(uint64_t));
  }

 private:
  uint64_t places_begin_;
  uint64_t texts_begin_;
  PageReader places_;
  PageReader texts_;
};

/// The member block, and where both stand in it.
struct MemberTexts {
  MemberTexts(const BlockStore& blocks, uint32_t index, uint64_t names_begin,
              uint64_t captions_begin, uint64_t texts_begin)
      : block(blocks, index), names(names_begin), captions(captions_begin), texts(texts_begin) {}

  TextReader Names() const { return {block, names, texts}; }
  TextReader Captions() const { return {block, captions, texts}; }

  PagedBlock block;
  uint64_t names;
  uint64_t captions;
  uint64_t texts;
};

}  // namespace vok::olap
