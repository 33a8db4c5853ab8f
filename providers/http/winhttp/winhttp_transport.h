// HTTP through the system's own WinHTTP: its certificates, its proxy, its ways to log in.
//
// The user's own login is offered to a server only when the settings ask for "negotiate" and name
// no user. Answers come compressed where this Windows unpacks them.
#pragma once

#include <string>

#include "platform/http.h"
#include "providers/http/winhttp/internet_handle.h"
#include "providers/http/winhttp/winhttp_request.h"

namespace vok::windows {

class WinHttpTransport : public HttpTransport {
 public:
  /// Failure 445 for settings that name a `ca_file`, which WinHTTP cannot read.
  WinHttpTransport(const std::string& address, const ServerSettings& settings);

  Transfer Post(const HttpRequest& request, HttpBody& body) override;

 private:
  bool Connect();
  void OpenSession();
  void SetOptions(HINTERNET request) const;
  void SetLogin(HINTERNET request) const;
  bool Ask(WinHttpRequest& exchange, const HttpRequest& request);
  bool ChooseLogin(const WinHttpRequest& exchange);
  Transfer Receive(WinHttpRequest& exchange, HttpBody& body) const;

  std::wstring address_;
  ServerSettings settings_;
  std::wstring proxy_user_;
  std::wstring proxy_password_;
  InternetHandle session_;
  InternetHandle connection_;
  std::wstring path_;  ///< with the query
  bool secure_ = false;
  DWORD login_;  ///< WINHTTP_AUTH_SCHEME_…; 0: none, until the server asks
};

}  // namespace vok::windows
