// The port for HTTP: carries one request to a server and its answer back.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/server_settings.h"

namespace vok {

struct HttpHead {
  long status = 0;
  std::string content_type = {};
  std::string location = {};  ///< where a redirect points
  std::string no_login = {};  ///< why the login was not sent; "" when it was, or there is none
};

/// What it throws comes out of `HttpTransport::Post`.
class HttpBody {
 public:
  virtual ~HttpBody() = default;
  /// A piece of the body, decompressed. `head` has its status and type.
  virtual void Take(const HttpHead& head, std::string_view piece) = 0;
  /// The first bytes that it took, to be shown.
  virtual std::string_view beginning() const = 0;
};

struct HttpRequest {
  std::vector<std::string> headers;  ///< "Name: value"
  std::string_view content;
  const std::atomic<bool>& cancelled;  ///< set: the request ends within a second
};

enum class TransferEnd {
  kWhole,  ///< an answer of any status is there
  kCancelled,
  kConnectSeconds,  ///< the limits of `ServerSettings`
  kIdleSeconds,
  kTotalSeconds,
  kBadAddress,
  kUnknownHost,
  kNoConnection,  ///< nothing was sent
  kUntrusted,     ///< the server's certificate
  kNotSecure,     ///< no TLS with this server
  kNotHttp,
  kNoAnswer,
  kCutShort,
  kDamaged,  ///< the compression
  kOther,
};

struct Transfer {
  TransferEnd end = TransferEnd::kWhole;
  std::string words = {};  ///< the library's own, on an early end
  HttpHead head = {};      ///< of an answer that is whole
};

/// Bound to one address and its settings; keeps its connection for the next request. Used by one
/// thread.
class HttpTransport {
 public:
  virtual ~HttpTransport() = default;
  /// Sends once, with the login and the proxy of the settings, and follows no redirect. Sent again
  /// is only what the server asks a login for, and what it dropped with a kept connection before it
  /// answered anything.
  virtual Transfer Post(const HttpRequest& request, HttpBody& body) = 0;
};

/// Failures: settings that this transport cannot keep.
using NewHttpTransport = std::function<std::unique_ptr<HttpTransport>(
    const std::string& address, const ServerSettings& settings)>;

template <typename Transport>
NewHttpTransport NewTransport() {
  return [](const std::string& address, const ServerSettings& settings) {
    return std::make_unique<Transport>(address, settings);
  };
}

}  // namespace vok
