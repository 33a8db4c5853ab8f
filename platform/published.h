// An object that other threads and signal handlers may use for as long as it is there.
#pragma once

#include <atomic>
#include <thread>

namespace vok {

/// Whoever owns the object publishes it, and withdraws it before it goes. Those who use it neither
/// lock nor wait, so a signal handler may; it must not be what withdraws.
template <typename Object>
class Published {
 public:
  void Publish(Object& object) { object_ = &object; }

  /// Returns when nobody uses the object any more.
  void Withdraw() {
    object_ = nullptr;
    while (users_ != 0) std::this_thread::yield();
  }

  /// Calls `use` with the object, if there is one.
  template <typename Action>
  void Use(const Action& use) {
    ++users_;  // before the look at the object: `Withdraw` looks in the other order
    if (Object* object = object_) use(*object);
    --users_;
  }

 private:
  static_assert(std::atomic<Object*>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
  std::atomic<Object*> object_ = nullptr;
  std::atomic<int> users_ = 0;
};

}  // namespace vok
