#include "providers/xml/parser_memory.h"

#include <cstdlib>
#include <utility>

namespace vok::xml {
namespace {

thread_local ParserMemory* current = nullptr;

}  // namespace

/// Stands before what expat sees of it.
struct alignas(std::max_align_t) ParserMemory::Block {
  ParserMemory* owner;
  std::size_t size;
};

ParserMemory::Scope::Scope(ParserMemory& memory) : outer_(std::exchange(current, &memory)) {}

ParserMemory::Scope::~Scope() { current = outer_; }

const XML_Memory_Handling_Suite* ParserMemory::Functions() {
  static constexpr XML_Memory_Handling_Suite kFunctions = {&Allocate, &Resize, &Free};
  return &kFunctions;
}

/// A block of `size` in place of `old`, which may be null; null when there is no room.
void* ParserMemory::Place(ParserMemory& memory, Block* old, std::size_t size) {
  const std::size_t others = memory.used_ - (old == nullptr ? 0 : old->size);
  if (size > kMost - others) {
    memory.refused_ = true;
    return nullptr;
  }
  auto* const block = static_cast<Block*>(std::realloc(old, sizeof(Block) + size));
  if (block == nullptr) return nullptr;
  *block = {&memory, size};
  memory.used_ = others + size;
  return block + 1;
}

void* ParserMemory::Allocate(std::size_t size) { return Place(*current, nullptr, size); }

void* ParserMemory::Resize(void* data, std::size_t size) {
  if (data == nullptr) return Allocate(size);
  Block* const block = static_cast<Block*>(data) - 1;
  return Place(*block->owner, block, size);
}

void ParserMemory::Free(void* data) {
  if (data == nullptr) return;
  Block* const block = static_cast<Block*>(data) - 1;
  block->owner->used_ -= block->size;
  std::free(block);
}

}  // namespace vok::xml
