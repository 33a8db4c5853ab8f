#include "hosts/windows/view/errands.h"

namespace vok::windows {
namespace {

thread_local Errands* of_this_thread = nullptr;

}  // namespace

Errands::Errands()
    : waiting_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      done_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

Errands* Errands::OfThisThread() { return of_this_thread; }

void Errands::Begin() { of_this_thread = this; }

void Errands::Ask(const std::function<void()>& errand) {
  errand_ = &errand;
  ::SetEvent(waiting_.get());
  ::WaitForSingleObject(done_.get(), INFINITE);
}

void Errands::Run() {
  (*errand_)();
  ::SetEvent(done_.get());
}

MessageAnswer ErrandBoxes::Show(const vok::MessageBox& box) {
  Errands* const errands = Errands::OfThisThread();
  if (errands == nullptr) return boxes_.Show(box);
  MessageAnswer answer{};
  std::exception_ptr failure;
  errands->Ask([&] {
    try {
      answer = boxes_.Show(box);
    } catch (...) {
      failure = std::current_exception();
    }
  });
  if (failure) std::rethrow_exception(failure);
  return answer;
}

}  // namespace vok::windows
