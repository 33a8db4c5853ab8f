// The functions of WinHTTP that we call, without "WinHttp" in their names.
#pragma once

// The others need the first.
// clang-format off
#include "system/windows/system_header.h"
#include <winhttp.h>
// clang-format on

#include "system/windows/system_dll.h"

namespace vok::windows {

#define VOK_FUNCTION(name)                \
  const decltype(&::WinHttp##name) name = \
      RequiredSystemFunction<decltype(&::WinHttp##name)>(L"winhttp.dll", "WinHttp" #name)

struct WinHttpFunctions {
  VOK_FUNCTION(CloseHandle);
  VOK_FUNCTION(Connect);
  VOK_FUNCTION(CrackUrl);
  VOK_FUNCTION(Open);
  VOK_FUNCTION(OpenRequest);
  VOK_FUNCTION(QueryAuthSchemes);
  VOK_FUNCTION(QueryDataAvailable);
  VOK_FUNCTION(QueryHeaders);
  VOK_FUNCTION(ReadData);
  VOK_FUNCTION(ReceiveResponse);
  VOK_FUNCTION(SendRequest);
  VOK_FUNCTION(SetCredentials);
  VOK_FUNCTION(SetOption);
  VOK_FUNCTION(SetStatusCallback);
  VOK_FUNCTION(SetTimeouts);
};

#undef VOK_FUNCTION

/// Loaded when first asked for.
inline const WinHttpFunctions& WinHttp() {
  static const WinHttpFunctions functions;
  return functions;
}

}  // namespace vok::windows
