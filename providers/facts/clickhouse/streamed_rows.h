// An answer over HTTP as rows that are asked for piece by piece: it is read ahead on a thread.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/http.h"
#include "platform/table_server.h"

namespace vok::clickhouse {

/// Sends the request and gives the answer to the body; returns the answer's head.
using Request = std::function<HttpHead(const QueryStop& stop, HttpBody& body)>;

/// What an answer is that has no rows: the failure with its words.
using FailureOf = std::function<Failure(const HttpHead& head, const std::string& words)>;

class StreamedRows : public ServerRows, private HttpBody {
 public:
  /// `request` is called at once, on a thread of its own; `give_up` when the object goes before all
  /// rows came. `stop`, and `check` as `TableServer::AddUp` takes it, outlive the object; `check`
  /// may be nullptr.
  StreamedRows(Request request, FailureOf failure_of, std::function<void()> give_up, double guess,
               const QueryStop& stop, const std::function<void()>* check);
  ~StreamedRows() override;
  StreamedRows(const StreamedRows&) = delete;
  StreamedRows& operator=(const StreamedRows&) = delete;

  bool Next(std::string& text) override;
  double Guess() const override { return guess_; }

 private:
  void Take(const HttpHead& head, std::string_view piece) override;
  std::string_view beginning() const override { return words_; }

  void Run();
  void Finish(const HttpHead& head);
  /// Waits while the reader has enough to do.
  void Give(std::string rows);

  Request request_;
  FailureOf failure_of_;
  std::function<void()> give_up_;
  double guess_;
  const QueryStop& stop_;
  const std::function<void()>* check_;
  QueryStop own_stop_;

  // Of the thread that reads ahead.
  std::string rest_;   // begins with the last whole row that came
  std::string words_;  // of an answer without rows

  std::mutex mutex_;  // of what follows
  std::condition_variable changed_;
  std::deque<std::string> ready_;
  bool is_done_ = false;
  std::exception_ptr failure_;

  std::thread thread_;  // last: it uses all above
};

}  // namespace vok::clickhouse
