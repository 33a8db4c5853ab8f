// Memory of columns of cells, kept from one query for the next: getting fresh pages from the system
// takes longer than filling them. Safe to use from several threads.
#pragma once

#include <cstddef>
#include <vector>

namespace vok::olap {

/// While it lives, what the calling thread takes and has not given back is at most `bytes`: the
/// memory of one query. Failure 7 for more.
class MemoryLimit {
 public:
  explicit MemoryLimit(std::size_t bytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

  /// Counts what is taken elsewhere and never given back, under the thread's limit if it has one.
  static void Count(std::size_t bytes);

 private:
  MemoryLimit* before_;
  std::size_t limit_;
  std::size_t taken_ = 0;

  friend void ReturnColumnMemory(void* memory, std::size_t bytes) noexcept;
  void Give(std::size_t bytes) { taken_ -= bytes < taken_ ? bytes : taken_; }
  static thread_local MemoryLimit* current_;
};

/// At least `bytes`, for `ReturnColumnMemory` with the same number.
void* TakeColumnMemory(std::size_t bytes);
void ReturnColumnMemory(void* memory, std::size_t bytes) noexcept;

/// For a container that holds a column.
template <typename T>
struct ColumnAllocator {
  using value_type = T;

  ColumnAllocator() = default;
  template <typename Other>
  explicit ColumnAllocator(const ColumnAllocator<Other>& /*other*/) {}

  // NOLINTBEGIN(bugprone-sizeof-expression): T may be a pointer
  T* allocate(std::size_t count) { return static_cast<T*>(TakeColumnMemory(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t count) noexcept {
    ReturnColumnMemory(memory, count * sizeof(T));
  }
  // NOLINTEND(bugprone-sizeof-expression)
  bool operator==(const ColumnAllocator& /*other*/) const { return true; }
};

template <typename T>
using LongList = std::vector<T, ColumnAllocator<T>>;

}  // namespace vok::olap
