#include "providers/xmla/http_client.h"

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <exception>
#include <new>
#include <thread>

#include "platform/failure.h"
#include "providers/xmla/http_failure.h"

namespace vok::xmla {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kConnectAttempts = 3;
constexpr std::chrono::milliseconds kPauseBetweenAttempts{200};
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

/// The address without query and fragment.
std::string Shown(const std::string& address) {
  return address.substr(0, address.find_first_of("?#"));
}

void CheckAddress(const std::string& address) {
  const std::size_t host = address.find("://") + 3;
  const std::string authority = address.substr(host, address.find_first_of("/?#", host) - host);
  if (authority.find('@') == std::string::npos) return;
  throw Failure(failure_number::kUnspecified,
                "The address of the cube server bears a user's name or password. Take them out of "
                "the cube file's name, and put them as User and Password into Qel.ini, section "
                "[Xmla], or into VOKCUBE_XMLA_USER and VOKCUBE_XMLA_PASSWORD.");
}

}  // namespace

struct HttpClient::Handle {
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

  void SetHeaders(const std::string& action) {
    curl_slist_free_all(headers);
    headers = nullptr;
    for (const std::string& header :
         {std::string("Content-Type: text/xml; charset=utf-8"), "SOAPAction: \"" + action + "\"",
          std::string("Accept: text/xml, application/xml, application/soap+xml"),
          std::string("Expect:")}) {
      curl_slist* longer = curl_slist_append(headers, header.c_str());
      if (longer == nullptr) throw std::bad_alloc();
      headers = longer;
    }
    Set(curl, CURLOPT_HTTPHEADER, headers);
  }

  CURL* curl = nullptr;
  curl_slist* headers = nullptr;
  std::array<char, CURL_ERROR_SIZE> error{};
};

/// One request under way. Exceptions must not pass through the C code in between.
struct HttpClient::Exchange {
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
    head.location = text == nullptr ? "" : Shown(text);
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

HttpClient::HttpClient(const std::string& address, const XmlaSettings& settings)
    : shown_(Shown(address)), settings_(settings), handle_(std::make_unique<Handle>()) {
  CheckAddress(address);
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

HttpClient::~HttpClient() = default;

HttpHead HttpClient::Post(const std::string& action, const std::string& content, HttpBody& body) {
  CURL* curl = handle_->curl;
  Exchange exchange{.curl = curl,
                    .body = body,
                    .cancelled = cancelled_,
                    .patience = std::chrono::seconds(settings_.idle_seconds)};
  handle_->SetHeaders(action);
  Set(curl, CURLOPT_POSTFIELDS, content.data());
  Set(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(content.size()));
  Set(curl, CURLOPT_WRITEDATA, &exchange);
  Set(curl, CURLOPT_XFERINFODATA, &exchange);
  CURLcode code = CURLE_COULDNT_CONNECT;
  for (int i = 0; i < kConnectAttempts && code == CURLE_COULDNT_CONNECT && !cancelled_; ++i) {
    if (i > 0) std::this_thread::sleep_for(kPauseBetweenAttempts);
    handle_->error[0] = '\0';
    code = curl_easy_perform(curl);
  }
  if (exchange.thrown) std::rethrow_exception(exchange.thrown);
  if (cancelled_) throw CancelledFailure(shown_);
  if (exchange.idle) throw IdleFailure(settings_, body.beginning(), shown_);
  if (code != CURLE_OK) {
    throw TransferFailure({curl, code, handle_->error.data(), settings_}, body.beginning(), shown_);
  }
  exchange.ReadHead();  // where a redirect points is not known before
  return exchange.head;
}

}  // namespace vok::xmla
