// Memory of columns of cells, kept from one query for the next: getting fresh pages from the system
// takes longer than filling them. Safe to use from several threads.
#pragma once

#include <cstddef>

namespace vok::olap {

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

  T* allocate(std::size_t count) { return static_cast<T*>(TakeColumnMemory(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t count) noexcept {
    ReturnColumnMemory(memory, count * sizeof(T));
  }
  bool operator==(const ColumnAllocator& /*other*/) const { return true; }
};

}  // namespace vok::olap
