#include "providers/http/winhttp/winhttp_transport.h"

#include <shlwapi.h>

#include <charconv>

#include "platform/failure.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr std::size_t kMostAddress = 4096;  // letters of one that a redirect points to
constexpr int kMostSends = 8;               // a login takes up to three

struct Login {
  const char* name;
  DWORD scheme;
};

/// The safest first.
constexpr Login kLogins[] = {{"negotiate", WINHTTP_AUTH_SCHEME_NEGOTIATE},
                             {"ntlm", WINHTTP_AUTH_SCHEME_NTLM},
                             {"digest", WINHTTP_AUTH_SCHEME_DIGEST},
                             {"basic", WINHTTP_AUTH_SCHEME_BASIC}};

DWORD NamedLogin(const std::string& name) {
  for (const Login& login : kLogins) {
    if (name == login.name) return login.scheme;
  }
  return 0;
}

void SetNumber(HINTERNET handle, DWORD option, DWORD value) {
  WinHttp().SetOption(handle, option, &value, sizeof value);
}

URL_COMPONENTS Parts() {
  URL_COMPONENTS parts{};
  parts.dwStructSize = sizeof parts;
  parts.dwSchemeLength = parts.dwHostNameLength = parts.dwUserNameLength = parts.dwPasswordLength =
      parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
  return parts;
}

/// Of a part of an address, without its escapes.
std::wstring Plain(const wchar_t* text, DWORD length) {
  std::wstring plain(text == nullptr ? L"" : text, text == nullptr ? 0 : length);
  ::UrlUnescapeW(plain.data(), nullptr, nullptr, URL_UNESCAPE_INPLACE);
  plain.resize(std::char_traits<wchar_t>::length(plain.c_str()));
  return plain;
}

std::string Absolute(const std::wstring& base, const std::string& location) {
  wchar_t whole[kMostAddress];
  DWORD length = static_cast<DWORD>(std::size(whole));
  const HRESULT result =
      ::UrlCombineW(base.c_str(), Utf16(location).c_str(), whole, &length, URL_DONT_SIMPLIFY);
  return SUCCEEDED(result) ? Utf8({whole, length}) : location;
}

}  // namespace

WinHttpTransport::WinHttpTransport(const std::string& address, const ServerSettings& settings)
    : address_(Utf16(address.substr(0, address.find('#')))),
      settings_(settings),
      login_(NamedLogin(settings.authentication)) {
  if (settings.ca_file.empty()) return;
  throw Failure(failure_number::kNotSupported,
                "The " + std::string(settings.kind.name) +
                    " setting CaFile is not read on Windows. "
                    "Import that authority's certificate into Windows' trusted root certification "
                    "authorities, and take CaFile out of Qel.ini, section [" +
                    settings.kind.section + "], and " + settings.kind.variables +
                    "CA_FILE out of the environment.");
}

Transfer WinHttpTransport::Post(const HttpRequest& request, HttpBody& body) {
  if (!connection_.IsOpen() && !Connect()) return EarlyEnd(::GetLastError(), {});
  WinHttpRequest exchange({connection_.get(), path_, secure_}, settings_, request.cancelled);
  if (exchange.get() == nullptr) return exchange.end();
  SetOptions(exchange.get());
  return Ask(exchange, request) ? Receive(exchange, body) : exchange.end();
}

/// False: the system's last error says why.
bool WinHttpTransport::Connect() {
  URL_COMPONENTS parts = Parts();
  if (WinHttp().CrackUrl(address_.c_str(), 0, 0, &parts) == 0) return false;
  secure_ = parts.nScheme == INTERNET_SCHEME_HTTPS;
  path_.assign(parts.lpszUrlPath, parts.dwUrlPathLength);
  if (path_.empty()) path_ = L"/";
  path_.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
  const std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
  OpenSession();
  if (!session_.IsOpen()) return false;
  connection_ = InternetHandle(WinHttp().Connect(session_.get(), host.c_str(), parts.nPort, 0));
  return connection_.IsOpen();
}

void WinHttpTransport::OpenSession() {
  std::wstring address = Utf16(settings_.proxy);
  if (address.find(L"://") == std::wstring::npos) address.insert(0, L"http://");
  URL_COMPONENTS parts = Parts();
  std::wstring proxy;
  if (!settings_.proxy.empty()) {
    if (WinHttp().CrackUrl(address.c_str(), 0, 0, &parts) == 0) return;
    proxy.assign(parts.lpszHostName, parts.dwHostNameLength);
    proxy += L':' + std::to_wstring(parts.nPort);
    proxy_user_ = Plain(parts.lpszUserName, parts.dwUserNameLength);
    proxy_password_ = Plain(parts.lpszPassword, parts.dwPasswordLength);
  }
  session_ = InternetHandle(WinHttp().Open(
      L"VokCubeQ17",
      proxy.empty() ? WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY : WINHTTP_ACCESS_TYPE_NAMED_PROXY,
      proxy.empty() ? WINHTTP_NO_PROXY_NAME : proxy.c_str(), WINHTTP_NO_PROXY_BYPASS,
      WINHTTP_FLAG_ASYNC));
}

void WinHttpTransport::SetOptions(HINTERNET request) const {
  SetNumber(request, WINHTTP_OPTION_DISABLE_FEATURE,
            WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS);
  SetNumber(request, WINHTTP_OPTION_DECOMPRESSION, WINHTTP_DECOMPRESSION_FLAG_ALL);
  const bool own = settings_.authentication == "negotiate" && settings_.user.empty();
  SetNumber(request, WINHTTP_OPTION_AUTOLOGON_POLICY,
            own ? WINHTTP_AUTOLOGON_SECURITY_LEVEL_LOW : WINHTTP_AUTOLOGON_SECURITY_LEVEL_HIGH);
}

/// Each time that something is sent.
void WinHttpTransport::SetLogin(HINTERNET request) const {
  if (!proxy_user_.empty()) {
    WinHttp().SetCredentials(request, WINHTTP_AUTH_TARGET_PROXY, WINHTTP_AUTH_SCHEME_BASIC,
                             proxy_user_.c_str(), proxy_password_.c_str(), nullptr);
  }
  if (login_ == 0 || settings_.user.empty()) return;
  WinHttp().SetCredentials(request, WINHTTP_AUTH_TARGET_SERVER, login_,
                           Utf16(settings_.user).c_str(), Utf16(settings_.password).c_str(),
                           nullptr);
}

bool WinHttpTransport::Ask(WinHttpRequest& exchange, const HttpRequest& request) {
  std::wstring headers;
  for (const std::string& header : request.headers) headers += Utf16(header) + L"\r\n";
  for (int sends = 1;; ++sends) {
    SetLogin(exchange.get());
    const bool answered = exchange.Send(headers, request.content) && exchange.ReceiveHead();
    const bool again = answered ? ChooseLogin(exchange) : exchange.MustSendAgain();
    if (!again || sends == kMostSends) return answered;
  }
}

/// Whether a login that was not tried yet may help.
bool WinHttpTransport::ChooseLogin(const WinHttpRequest& exchange) {
  constexpr long kUnauthorized = 401;
  if (login_ != 0 || settings_.user.empty() || exchange.Status() != kUnauthorized) return false;
  DWORD offered = 0;
  DWORD first = 0;
  DWORD target = 0;
  WinHttp().QueryAuthSchemes(exchange.get(), &offered, &first, &target);
  for (const Login& login : kLogins) {
    if (login_ == 0 && (offered & login.scheme) != 0) login_ = login.scheme;
  }
  return login_ != 0;
}

Transfer WinHttpTransport::Receive(WinHttpRequest& exchange, HttpBody& body) const {
  HttpHead head{exchange.Status(), exchange.Header(WINHTTP_QUERY_CONTENT_TYPE), ""};
  std::size_t received = 0;
  for (;;) {
    const auto piece = exchange.Read();
    if (!piece) return exchange.end();
    if (piece->empty()) break;
    received += piece->size();
    body.Take(head, *piece);
  }
  const std::string length = exchange.Header(WINHTTP_QUERY_CONTENT_LENGTH);
  std::size_t told = 0;
  std::from_chars(length.data(), length.data() + length.size(), told);
  if (received < told && exchange.Header(WINHTTP_QUERY_CONTENT_ENCODING).empty()) {
    return {TransferEnd::kCutShort,
            std::to_string(received) + " of " + std::to_string(told) + " bytes came"};
  }
  const std::string location = exchange.Header(WINHTTP_QUERY_LOCATION);
  if (!location.empty()) head.location = Absolute(address_, location);
  return {.head = head};
}

}  // namespace vok::windows
