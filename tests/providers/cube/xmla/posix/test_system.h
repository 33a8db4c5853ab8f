// What the tests need of the operating system: sockets, and what the product uses there.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

#include "providers/http/curl/curl_transport.h"

namespace vok::xmla::test {

using Socket = int;
inline constexpr int kSendFlags = MSG_NOSIGNAL;
inline void StartSockets() {}
inline int CloseSocket(Socket handle) { return close(handle); }
inline int Poll(pollfd& wait, int milliseconds) { return poll(&wait, 1, milliseconds); }

inline void SetVariable(const char* name, const char* text) { setenv(name, text, 1); }
inline void RemoveVariable(const char* name) { unsetenv(name); }

inline NewHttpTransport SystemTransport() { return NewTransport<CurlTransport>(); }

}  // namespace vok::xmla::test
