// A thread beside that of the windows, and what it asks the latter to do for it.
#pragma once

#include <exception>
#include <functional>

#include "hosts/windows/platform/system_error.h"
#include "platform/message_box.h"

namespace vok::windows {

/// Errands of one worker thread, which the thread of the windows runs.
class Errands {
 public:
  Errands();
  /// The errands of the calling thread; nullptr when it is no worker.
  static Errands* OfThisThread();

  /// On the worker thread: makes it the one whose errands these are, until it ends.
  void Begin();
  /// On the worker thread: has the errand run and waits for its end. It throws nothing.
  void Ask(const std::function<void()>& errand);

  /// Signalled when an errand waits.
  HANDLE Waiting() const { return waiting_.get(); }
  /// On the thread of the windows: runs the errand that waits.
  void Run();

 private:
  Handle waiting_;
  Handle done_;
  const std::function<void()>* errand_ = nullptr;
};

/// Shows boxes through others, on the thread of the windows whoever asks.
class ErrandBoxes : public MessageBoxes {
 public:
  explicit ErrandBoxes(MessageBoxes& boxes) : boxes_(boxes) {}
  MessageAnswer Show(const vok::MessageBox& box) override;

 private:
  MessageBoxes& boxes_;
};

}  // namespace vok::windows
