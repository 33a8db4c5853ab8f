// What the tests need of the operating system: sockets, and what the product uses there.
#pragma once

// The others need the first.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
// clang-format on

#include <cstdlib>

#include "providers/http/winhttp/winhttp_transport.h"

namespace vok::xmla::test {

using Socket = SOCKET;
inline constexpr int kSendFlags = 0;
inline void StartSockets() {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
}
inline int CloseSocket(Socket handle) { return closesocket(handle); }
inline int Poll(pollfd& wait, int milliseconds) { return WSAPoll(&wait, 1, milliseconds); }

inline void SetVariable(const char* name, const char* text) { _putenv_s(name, text); }
inline void RemoveVariable(const char* name) { _putenv_s(name, ""); }

inline NewHttpTransport SystemTransport() { return NewTransport<windows::WinHttpTransport>(); }

}  // namespace vok::xmla::test
