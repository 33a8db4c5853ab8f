#include "ui/win32/errands.h"

#include <utility>

namespace vok::windows {

Errands::Errands()
    : waiting_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      done_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

void Errands::Ask(const std::function<void()>& errand) {
  errand_ = &errand;
  ::SetEvent(waiting_.get());
  ::WaitForSingleObject(done_.get(), INFINITE);
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void Errands::Run() noexcept {
  try {
    (*errand_)();
  } catch (...) {
    failure_ = std::current_exception();
  }
  ::SetEvent(done_.get());
}

}  // namespace vok::windows
