// The memory of one parser of expat's, which has no bound of its own: it keeps every name that it
// meets.
#pragma once

#include <expat.h>

#include <cstddef>

namespace vok::xml {

class ParserMemory {
 public:
  static constexpr std::size_t kMost = std::size_t{16} << 20;  // bytes

  ParserMemory() = default;
  ParserMemory(const ParserMemory&) = delete;
  ParserMemory& operator=(const ParserMemory&) = delete;

  /// While it lives, expat's new blocks on this thread are those of `memory`.
  class Scope {
   public:
    explicit Scope(ParserMemory& memory);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    ParserMemory* outer_;
  };

  /// What expat calls. The memory outlives its blocks.
  static const XML_Memory_Handling_Suite* Functions();
  /// Whether a block was refused for the limit.
  bool refused() const { return refused_; }

 private:
  struct Block;

  static void* Allocate(std::size_t size);
  static void* Resize(void* data, std::size_t size);
  static void Free(void* data);
  static void* Place(ParserMemory& memory, Block* old, std::size_t size);

  std::size_t used_ = 0;
  bool refused_ = false;
};

}  // namespace vok::xml
