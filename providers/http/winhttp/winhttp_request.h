// One HTTP request through WinHTTP, step by step. The system works on threads of its own; the
// caller waits for each step, within the limits of time and until it is cancelled.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/http.h"
#include "providers/http/winhttp/internet_handle.h"

namespace vok::windows {

/// How far a request had come when it ended.
struct Reached {
  bool connected = false;  ///< something could be sent
  bool answered = false;   ///< a byte had come
  bool in_body = false;
  DWORD distrust = 0;  ///< flags of WINHTTP_CALLBACK_STATUS_SECURE_FAILURE
};

/// The words are WinHTTP's own, or the system's, with what is wrong with a certificate.
Transfer EarlyEnd(DWORD error, const Reached& reached);

/// Where a request goes: host and port are the connection's.
struct HttpTarget {
  HINTERNET connection;
  std::wstring path;  ///< with the query
  bool secure;
};

/// Each step is false, or nothing, when the request ended early: `end()` then tells how.
class WinHttpRequest {
 public:
  /// `settings` outlive this.
  WinHttpRequest(const HttpTarget& target, const ServerSettings& settings,
                 const std::atomic<bool>& cancelled);
  ~WinHttpRequest();
  WinHttpRequest(const WinHttpRequest&) = delete;
  WinHttpRequest& operator=(const WinHttpRequest&) = delete;

  /// nullptr when it could not be made.
  HINTERNET get() const { return handle_.get(); }

  /// `content` stays until the request has ended.
  bool Send(const std::wstring& headers, std::string_view content);
  bool ReceiveHead();
  /// The system asks for `Send` again: a login goes on.
  bool MustSendAgain() const { return error_ == ERROR_WINHTTP_RESEND_REQUEST; }
  /// The next piece of the body, which lives until the next step; empty at the end.
  std::optional<std::string_view> Read();

  /// A header of the answer; "" for one that is not there.
  std::string Header(DWORD which) const;
  long Status() const;
  Transfer end() const { return end_; }

 private:
  struct Progress;
  using Clock = std::chrono::steady_clock;

  static void CALLBACK OnStatus(HINTERNET, DWORD_PTR context, DWORD status, void* information,
                                DWORD size);
  void Prepare();
  bool Await(BOOL begun);
  std::optional<TransferEnd> LimitReached() const;
  bool End(DWORD error);

  const ServerSettings& settings_;
  const std::atomic<bool>& cancelled_;
  std::shared_ptr<Progress> progress_;
  InternetHandle handle_;
  DWORD_PTR context_ = 0;
  Clock::time_point begun_ = Clock::now();
  DWORD error_ = 0;
  Transfer end_;
};

}  // namespace vok::windows
