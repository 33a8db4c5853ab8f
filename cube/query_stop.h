// The way to stop a query that runs: another thread or a signal handler asks, the run looks whether
// it was asked between its steps, and the connection that it works on ends what it is doing.
#pragma once

#include <atomic>

#include "platform/cube.h"
#include "platform/failure.h"
#include "platform/published.h"

namespace vok {

/// One for each run; it outlives the run and all who may ask.
class QueryStop {
 public:
  /// Once asked it stays asked. From any thread and from a signal handler.
  void Ask() {
    asked_ = true;
    connection_.Use([](CubeConnection& connection) { connection.Cancel(); });
  }

  /// Failure `kQueryCancelled` when the stop was asked.
  void Check() const {
    if (asked_) throw Failure(kQueryCancelled, "The query was stopped before its end.");
  }

  /// The connection whose query is to end, from before it is opened. Failures are those of `Check`.
  void Attach(CubeConnection& connection) {
    connection_.Publish(connection);
    if (!asked_) return;
    Detach();  // who asked before may not have reached it
    Check();
  }
  /// Before the connection goes; there need not be one.
  void Detach() { connection_.Withdraw(); }

 private:
  std::atomic<bool> asked_ = false;
  Published<CubeConnection> connection_;
};

}  // namespace vok
