#include "providers/http/winhttp/transfer_end.h"

#include "system/windows/system_error.h"

namespace vok::windows {
namespace {

struct Distrust {
  DWORD flag;
  const char* words;
};

constexpr Distrust kDistrust[] = {
    {WINHTTP_CALLBACK_STATUS_FLAG_INVALID_CA, "its certificate's authority is not trusted"},
    {WINHTTP_CALLBACK_STATUS_FLAG_CERT_CN_INVALID, "its certificate is for another name"},
    {WINHTTP_CALLBACK_STATUS_FLAG_CERT_DATE_INVALID,
     "its certificate has expired, or is not valid yet"},
    {WINHTTP_CALLBACK_STATUS_FLAG_CERT_REVOKED, "its certificate was revoked"},
    {WINHTTP_CALLBACK_STATUS_FLAG_CERT_REV_FAILED,
     "whether its certificate was revoked cannot be found out"},
    {WINHTTP_CALLBACK_STATUS_FLAG_INVALID_CERT, "its certificate is not valid"},
};

std::string WordsOn(DWORD error, DWORD distrust) {
  std::string words = SystemWords(error, ::GetModuleHandleW(L"winhttp.dll"));
  for (const Distrust& each : kDistrust) {
    if ((distrust & each.flag) != 0) words += std::string("; ") + each.words;
  }
  return words;
}

TransferEnd SecureEnd(DWORD distrust) {
  return (distrust & ~WINHTTP_CALLBACK_STATUS_FLAG_SECURITY_CHANNEL_ERROR) != 0
             ? TransferEnd::kUntrusted
             : TransferEnd::kNotSecure;
}

/// A connection that ended, or an answer that made no sense.
TransferEnd BrokenEnd(const Reached& reached) {
  if (reached.in_body) return TransferEnd::kCutShort;
  if (reached.answered) return TransferEnd::kNotHttp;
  return reached.connected ? TransferEnd::kNoAnswer : TransferEnd::kNoConnection;
}

TransferEnd KindOf(DWORD error, const Reached& reached) {
  switch (error) {
    case ERROR_WINHTTP_INVALID_URL:
    case ERROR_WINHTTP_UNRECOGNIZED_SCHEME:
      return TransferEnd::kBadAddress;
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
      return TransferEnd::kUnknownHost;
    case ERROR_WINHTTP_CANNOT_CONNECT:
      return TransferEnd::kNoConnection;
    case ERROR_WINHTTP_TIMEOUT:
      return reached.connected ? TransferEnd::kIdleSeconds : TransferEnd::kNoConnection;
    case ERROR_WINHTTP_SECURE_FAILURE:
    case ERROR_WINHTTP_SECURE_CHANNEL_ERROR:
      return SecureEnd(reached.distrust);
    case ERROR_WINHTTP_SECURE_INVALID_CA:
    case ERROR_WINHTTP_SECURE_INVALID_CERT:
    case ERROR_WINHTTP_SECURE_CERT_CN_INVALID:
    case ERROR_WINHTTP_SECURE_CERT_DATE_INVALID:
    case ERROR_WINHTTP_SECURE_CERT_REVOKED:
    case ERROR_WINHTTP_SECURE_CERT_REV_FAILED:
      return TransferEnd::kUntrusted;
    case ERROR_WINHTTP_CONNECTION_ERROR:
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
    case ERROR_WINHTTP_INVALID_HEADER:
      return BrokenEnd(reached);
    case ERROR_INVALID_DATA:
      return TransferEnd::kDamaged;
    default:
      return reached.in_body ? TransferEnd::kCutShort : TransferEnd::kOther;
  }
}

}  // namespace

Transfer EarlyEnd(DWORD error, const Reached& reached) {
  return {KindOf(error, reached), WordsOn(error, reached.distrust)};
}

}  // namespace vok::windows
