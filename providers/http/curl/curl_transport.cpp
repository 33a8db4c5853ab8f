#include "providers/http/curl/curl_transport.h"

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <exception>
#include <new>

#include "platform/failure.h"

namespace vok {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLongestWait = 7 * 24 * 3600;  // seconds

/// Once per process, before the first handle.
void InitializeCurl() {
  static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (initialized != CURLE_OK) throw std::bad_alloc();
}

template <typename T>
void Set(CURL* curl, CURLoption option, T value) {
  const CURLcode code = curl_easy_setopt(curl, option, value);
  if (code == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
  if (code != CURLE_OK) {
    throw Failure(
        failure_number::kNotSupported,
        std::string("The HTTP library refuses an option of the cube server connection: ") +
            curl_easy_strerror(code) + ". Install libcurl 7.85 or later.");
  }
}

unsigned long Authentications(const std::string& name) {
  if (name == "basic") return CURLAUTH_BASIC;
  if (name == "digest") return CURLAUTH_DIGEST;
  if (name == "ntlm") return CURLAUTH_NTLM;
  if (name == "negotiate") return CURLAUTH_NEGOTIATE;
  return CURLAUTH_ANY;
}

TransferEnd EndOf(CURLcode code) {
  switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
      return TransferEnd::kNotHttp;
    case CURLE_URL_MALFORMAT:
      return TransferEnd::kBadAddress;
    case CURLE_COULDNT_RESOLVE_HOST:
      return TransferEnd::kUnknownHost;
    case CURLE_COULDNT_CONNECT:
      return TransferEnd::kNoConnection;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      return TransferEnd::kUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
      return TransferEnd::kNotSecure;
    case CURLE_GOT_NOTHING:
      return TransferEnd::kNoAnswer;
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
      return TransferEnd::kCutShort;
    case CURLE_BAD_CONTENT_ENCODING:
      return TransferEnd::kDamaged;
    default:
      return TransferEnd::kOther;
  }
}

}  // namespace

struct CurlTransport::Handle {
  Handle() {
    InitializeCurl();
    curl = curl_easy_init();
    if (curl == nullptr) throw std::bad_alloc();
  }
  ~Handle() {
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void SetHeaders(const std::vector<std::string>& lines) {
    curl_slist_free_all(headers);
    headers = nullptr;
    for (const std::string& line : lines) Append(line);
    Append("Expect:");  // asks for no leave to send
    Set(curl, CURLOPT_HTTPHEADER, headers);
  }

  void Append(const std::string& line) {
    curl_slist* longer = curl_slist_append(headers, line.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    headers = longer;
  }

  CURL* curl = nullptr;
  curl_slist* headers = nullptr;
  std::array<char, CURL_ERROR_SIZE> error{};
};

/// One request under way. Exceptions must not pass through the C code in between.
struct CurlTransport::Exchange {
  CURL* curl;
  HttpBody& body;
  const std::atomic<bool>& cancelled;
  std::chrono::seconds patience;  // 0: endless
  HttpHead head = {};
  bool head_complete = false;
  curl_off_t moved = 0;  // bytes in both directions
  Clock::time_point last_move = Clock::now();
  bool idle = false;
  std::exception_ptr thrown = nullptr;

  void ReadHead() {
    const char* text = nullptr;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &head.status);
    curl_easy_getinfo(curl, CURLINFO_CONTENT_TYPE, &text);
    head.content_type = text == nullptr ? "" : text;
    curl_easy_getinfo(curl, CURLINFO_REDIRECT_URL, &text);
    head.location = text == nullptr ? "" : text;
  }

  static std::size_t OnBody(const char* piece, std::size_t, std::size_t size, void* data) {
    auto& exchange = *static_cast<Exchange*>(data);
    try {
      if (!exchange.head_complete) exchange.ReadHead();
      exchange.head_complete = true;
      exchange.body.Take(exchange.head, {piece, size});
      return size;
    } catch (...) {
      exchange.thrown = std::current_exception();
      return size == 0 ? 1 : 0;  // another number than was given ends the request
    }
  }

  /// Called at least once a second.
  static int OnProgress(void* data, curl_off_t, curl_off_t received, curl_off_t, curl_off_t sent) {
    auto& exchange = *static_cast<Exchange*>(data);
    const auto now = Clock::now();
    if (received + sent != exchange.moved) {
      exchange.moved = received + sent;
      exchange.last_move = now;
    }
    const auto patience = exchange.patience;
    exchange.idle = patience.count() > 0 && now - exchange.last_move >= patience;
    return exchange.cancelled || exchange.idle ? 1 : 0;
  }
};

CurlTransport::CurlTransport(const std::string& address, const ServerSettings& settings)
    : settings_(settings), handle_(std::make_unique<Handle>()) {
  CURL* curl = handle_->curl;
  Set(curl, CURLOPT_URL, address.c_str());
  Set(curl, CURLOPT_PROTOCOLS_STR, "http,https");
  Set(curl, CURLOPT_NOSIGNAL, 1L);
  Set(curl, CURLOPT_POST, 1L);
  Set(curl, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
  Set(curl, CURLOPT_USERAGENT, "VokCubeQ17");
  Set(curl, CURLOPT_ERRORBUFFER, handle_->error.data());
  Set(curl, CURLOPT_WRITEFUNCTION, &Exchange::OnBody);
  Set(curl, CURLOPT_XFERINFOFUNCTION, &Exchange::OnProgress);
  Set(curl, CURLOPT_NOPROGRESS, 0L);
  Set(curl, CURLOPT_BUFFERSIZE, 256L * 1024);
  const bool waits = settings.connect_seconds == 0;  // 0 would be the library's own limit
  Set(curl, CURLOPT_CONNECTTIMEOUT,
      static_cast<long>(waits ? kLongestWait : settings.connect_seconds));
  Set(curl, CURLOPT_TIMEOUT, static_cast<long>(settings.total_seconds));
  if (!settings.ca_file.empty()) Set(curl, CURLOPT_CAINFO, settings.ca_file.c_str());
  if (!settings.proxy.empty()) Set(curl, CURLOPT_PROXY, settings.proxy.c_str());
  if (!settings.user.empty() || settings.authentication == "negotiate") {
    Set(curl, CURLOPT_USERNAME, settings.user.c_str());
    Set(curl, CURLOPT_PASSWORD, settings.password.c_str());
    Set(curl, CURLOPT_HTTPAUTH, Authentications(settings.authentication));
  }
}

CurlTransport::~CurlTransport() = default;

Transfer CurlTransport::Post(const HttpRequest& request, HttpBody& body) {
  CURL* curl = handle_->curl;
  Exchange exchange{.curl = curl,
                    .body = body,
                    .cancelled = request.cancelled,
                    .patience = std::chrono::seconds(settings_.idle_seconds)};
  handle_->SetHeaders(request.headers);
  Set(curl, CURLOPT_POSTFIELDS, request.content.data());
  Set(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.content.size()));
  Set(curl, CURLOPT_WRITEDATA, &exchange);
  Set(curl, CURLOPT_XFERINFODATA, &exchange);
  handle_->error[0] = '\0';
  const CURLcode code = curl_easy_perform(curl);
  if (exchange.thrown) std::rethrow_exception(exchange.thrown);
  if (request.cancelled) return {TransferEnd::kCancelled};
  if (exchange.idle) return {TransferEnd::kIdleSeconds};
  if (code != CURLE_OK) return EarlyEnd(code);
  exchange.ReadHead();  // where a redirect points is not known before
  return {.head = exchange.head};
}

Transfer CurlTransport::EarlyEnd(int number) const {
  const auto code = static_cast<CURLcode>(number);
  if (code != CURLE_OPERATION_TIMEDOUT) {
    const std::string words = handle_->error.data();
    return {EndOf(code), words.empty() ? curl_easy_strerror(code) : words};
  }
  // The library's own total time may lie a little below the limit that it has kept.
  curl_off_t until_sending = 0;
  curl_easy_getinfo(handle_->curl, CURLINFO_PRETRANSFER_TIME_T, &until_sending);
  const int total = settings_.total_seconds;
  const int connect = settings_.connect_seconds;
  const bool over = total > 0 && (until_sending > 0 || connect == 0 || total <= connect);
  return {over ? TransferEnd::kTotalSeconds : TransferEnd::kConnectSeconds};
}

}  // namespace vok
