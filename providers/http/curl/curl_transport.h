// HTTP through libcurl.
#pragma once

#include <memory>
#include <string>

#include "platform/http.h"

namespace vok {

class CurlTransport : public HttpTransport {
 public:
  /// Failure "not supported" where libcurl is too old.
  CurlTransport(const std::string& address, const ServerSettings& settings);
  ~CurlTransport() override;
  CurlTransport(const CurlTransport&) = delete;
  CurlTransport& operator=(const CurlTransport&) = delete;

  Transfer Post(const HttpRequest& request, HttpBody& body) override;

 private:
  struct Handle;
  struct Exchange;

  Transfer EarlyEnd(int code) const;

  ServerSettings settings_;
  std::unique_ptr<Handle> handle_;
};

}  // namespace vok
