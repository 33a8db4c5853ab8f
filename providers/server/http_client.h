// Posts to one address over HTTP and hands on the answer as it arrives. The connection is kept for
// the next request. Used by one thread.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "platform/http.h"
#include "platform/query_stop.h"

namespace vok::server {

class HttpClient {
 public:
  /// Failure -2147467259 for an address with an "@": a user's name belongs into the settings; and
  /// those of `transport`. The login of the settings is kept from a server that it is not for.
  /// `stop` ends the request under way within a second, and all that follow; it outlives the
  /// client.
  HttpClient(const std::string& address, const ServerSettings& settings,
             const NewHttpTransport& transport, const QueryStop* stop);

  /// For messages: the address without its query and fragment.
  const std::string& shown_address() const { return shown_; }

  /// Sends `content` and gives the head of the answer, of any status. Redirects are not
  /// followed. A connection that cannot be made is tried three times; what was sent is never sent
  /// again, unless the server had closed a kept connection before it answered anything. Failures:
  /// -2147467259 for a server that is not reached, not trusted, or whose answer ends too early or
  /// is larger than the settings allow;
  /// -2147217871 for each of the three limits of time; `kQueryCancelled`.
  HttpHead Post(const std::vector<std::string>& headers, const std::string& content,
                HttpBody& body);

 private:
  std::string shown_;
  std::string no_login_;  // why the login is not for this server
  ServerSettings settings_;
  std::unique_ptr<HttpTransport> transport_;
  const std::atomic<bool>& cancelled_;
};

}  // namespace vok::server
