#include "providers/cube/olap/storage/column_memory.h"

#include <array>
#include <bit>
#include <mutex>
#include <new>
#include <string>

#include "platform/failure.h"

namespace vok::olap {
namespace {

/// Smaller pieces are left to the system, and so is what goes beyond the limit.
constexpr std::size_t kLeastKept = 4096;
constexpr std::size_t kMostKept = std::size_t{64} << 20;

/// Pieces come in eight sizes between a power of two and the next.
constexpr int kStepBits = 3;

struct SizeClass {
  std::size_t index;
  std::size_t bytes;
};

SizeClass ClassOf(std::size_t bytes) {
  const int shift = static_cast<int>(std::bit_width(bytes - 1)) - 1 - kStepBits;
  const std::size_t steps = (bytes - 1) >> shift;  // 8 to 15
  return {(static_cast<std::size_t>(shift) << kStepBits) + steps, (steps + 1) << shift};
}

/// The pieces that are not in use, those of one size in a list that runs through them.
class KeptPieces {
 public:
  void* Take(SizeClass size) {
    const std::lock_guard lock(mutex_);
    Piece* piece = lists_[size.index];
    if (piece == nullptr) return nullptr;
    lists_[size.index] = piece->next;
    kept_bytes_ -= size.bytes;
    return piece;
  }

  bool Keep(void* memory, SizeClass size) {
    const std::lock_guard lock(mutex_);
    if (kept_bytes_ + size.bytes > kMostKept) return false;
    lists_[size.index] = new (memory) Piece{lists_[size.index]};
    kept_bytes_ += size.bytes;
    return true;
  }

 private:
  struct Piece {
    Piece* next;
  };

  std::mutex mutex_;
  std::array<Piece*, std::size_t{65} << kStepBits> lists_{};
  std::size_t kept_bytes_ = 0;
};

/// Never destroyed: columns that live as long as the program are given back last of all.
KeptPieces& Kept() {
  static auto& pieces = *new KeptPieces;
  return pieces;
}

}  // namespace

thread_local MemoryLimit* MemoryLimit::current_ = nullptr;

MemoryLimit::MemoryLimit(std::size_t bytes) : before_(current_), limit_(bytes) { current_ = this; }

MemoryLimit::~MemoryLimit() { current_ = before_; }

void MemoryLimit::Count(std::size_t bytes) {
  if (current_ == nullptr) return;
  if (bytes > current_->limit_ - current_->taken_) {
    throw Failure(failure_number::kOutOfMemory,
                  "The query needs more than its limit of " +
                      std::to_string(current_->limit_ >> 20) +
                      " MB of memory. Ask for fewer members or allow more memory.");
  }
  current_->taken_ += bytes;
}

void* TakeColumnMemory(std::size_t bytes) {
  MemoryLimit::Count(bytes);
  if (bytes < kLeastKept) return ::operator new(bytes);
  const SizeClass size = ClassOf(bytes);
  void* memory = Kept().Take(size);
  return memory != nullptr ? memory : ::operator new(size.bytes);
}

void ReturnColumnMemory(void* memory, std::size_t bytes) noexcept {
  if (MemoryLimit::current_ != nullptr) MemoryLimit::current_->Give(bytes);
  if (bytes >= kLeastKept && Kept().Keep(memory, ClassOf(bytes))) return;
  ::operator delete(memory);
}

}  // namespace vok::olap
