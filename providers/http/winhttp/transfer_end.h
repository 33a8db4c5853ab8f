// What WinHTTP's error numbers mean to a cube server's client.
#pragma once

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

}  // namespace vok::windows
