#include "providers/http/winhttp/winhttp_request.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "system/windows/system_error.h"
#include "system/windows/utf16.h"

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

using std::chrono::seconds;

constexpr std::chrono::milliseconds kGlance{100};  // how soon a cancellation is seen
constexpr seconds kLongestClosing{1};
constexpr int kLongestWait = 7 * 24 * 3600;  // seconds
constexpr std::size_t kBuffer = std::size_t{256} * 1024;

/// The system's own limit in milliseconds: our clock comes first.
int Patience(int limit) { return 1000 * (limit == 0 ? kLongestWait : limit + 1); }

bool Over(seconds limit, std::chrono::steady_clock::time_point since) {
  return limit.count() > 0 && std::chrono::steady_clock::now() - since >= limit;
}

}  // namespace

Transfer EarlyEnd(DWORD error, const Reached& reached) {
  return {KindOf(error, reached), WordsOn(error, reached.distrust)};
}

/// What the system's threads tell; it lives until they have nothing more to tell.
struct WinHttpRequest::Progress {
  std::mutex mutex;
  std::condition_variable changed;
  bool done = false;  // the step under way
  bool closed = false;
  DWORD error = 0;  // of the step
  DWORD count = 0;  // bytes that the step gave
  Reached reached = {};
  Clock::time_point last_move = Clock::now();
  std::vector<char> buffer = std::vector<char>(kBuffer);

  void Tell(DWORD status, const void* information, DWORD size) {
    const std::lock_guard lock(mutex);
    last_move = Clock::now();
    switch (status) {
      case WINHTTP_CALLBACK_STATUS_SENDING_REQUEST:
        reached.connected = true;
        break;
      case WINHTTP_CALLBACK_STATUS_RESPONSE_RECEIVED:
        reached.answered = reached.answered || *static_cast<const DWORD*>(information) > 0;
        break;
      case WINHTTP_CALLBACK_STATUS_SECURE_FAILURE:
        reached.distrust = *static_cast<const DWORD*>(information);
        break;
      case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
        Finish(static_cast<const WINHTTP_ASYNC_RESULT*>(information)->dwError, 0);
        break;
      case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
        Finish(0, *static_cast<const DWORD*>(information));
        break;
      case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
        Finish(0, size);
        break;
      case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
      case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
        Finish(0, 0);
        break;
      case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING:
        closed = true;
        break;
      default:
        break;
    }
    changed.notify_all();
  }

 private:
  void Finish(DWORD result, DWORD bytes) {
    done = true;
    error = result;
    count = bytes;
  }
};

void CALLBACK WinHttpRequest::OnStatus(HINTERNET, DWORD_PTR context, DWORD status,
                                       void* information, DWORD size) {
  auto* const progress = reinterpret_cast<std::shared_ptr<Progress>*>(context);
  if (progress == nullptr) return;  // handles of others
  (*progress)->Tell(status, information, size);
  if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) delete progress;  // the last call
}

WinHttpRequest::WinHttpRequest(const HttpTarget& target, const ServerSettings& settings,
                               const std::atomic<bool>& cancelled)
    : settings_(settings),
      cancelled_(cancelled),
      progress_(std::make_shared<Progress>()),
      handle_(WinHttp().OpenRequest(target.connection, L"POST", target.path.c_str(), nullptr,
                                    WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                    target.secure ? WINHTTP_FLAG_SECURE : 0)) {
  if (!handle_.IsOpen()) {
    End(::GetLastError());
    return;
  }
  // The callback's, which deletes it when the handle is closed.
  context_ = reinterpret_cast<DWORD_PTR>(new std::shared_ptr<Progress>(progress_));
  WinHttp().SetStatusCallback(get(), &OnStatus, WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS, 0);
  WinHttp().SetOption(get(), WINHTTP_OPTION_CONTEXT_VALUE, &context_, sizeof context_);
  const int idle = Patience(settings.idle_seconds);
  WinHttp().SetTimeouts(get(), 0, Patience(settings.connect_seconds), idle, idle);
  DWORD head_wait = static_cast<DWORD>(idle);
  WinHttp().SetOption(get(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &head_wait, sizeof head_wait);
}

WinHttpRequest::~WinHttpRequest() {
  if (!handle_.IsOpen()) return;
  handle_.Reset();
  std::unique_lock lock(progress_->mutex);
  if (progress_->changed.wait_for(lock, kLongestClosing, [&] { return progress_->closed; })) return;
  // One of the system's threads still has to call: this code must stay loaded.
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&OnStatus), &module);
}

bool WinHttpRequest::Send(const std::wstring& headers, std::string_view content) {
  Prepare();
  const auto size = static_cast<DWORD>(content.size());
  return Await(WinHttp().SendRequest(get(), headers.c_str(), static_cast<DWORD>(headers.size()),
                                     const_cast<char*>(content.data()), size, size, context_));
}

bool WinHttpRequest::ReceiveHead() {
  Prepare();
  if (!Await(WinHttp().ReceiveResponse(get(), nullptr))) return false;
  const std::lock_guard lock(progress_->mutex);
  progress_->reached.in_body = true;
  return true;
}

std::optional<std::string_view> WinHttpRequest::Read() {
  Prepare();
  if (!Await(WinHttp().QueryDataAvailable(get(), nullptr))) return std::nullopt;
  if (progress_->count == 0) return std::string_view();
  const DWORD wanted = std::min<DWORD>(progress_->count, kBuffer);
  Prepare();
  if (!Await(WinHttp().ReadData(get(), progress_->buffer.data(), wanted, nullptr))) {
    return std::nullopt;
  }
  return std::string_view(progress_->buffer.data(), progress_->count);
}

void WinHttpRequest::Prepare() {
  const std::lock_guard lock(progress_->mutex);
  progress_->done = false;
  error_ = 0;
}

bool WinHttpRequest::Await(BOOL begun) {
  if (begun == 0) return End(::GetLastError());
  std::unique_lock lock(progress_->mutex);
  for (;;) {  // limits come first: there may never be anything to wait for
    if (const auto limit = LimitReached()) {
      end_ = {*limit};
      return false;
    }
    if (progress_->done) break;
    progress_->changed.wait_for(lock, kGlance);
  }
  return progress_->error == 0 || End(progress_->error);
}

std::optional<TransferEnd> WinHttpRequest::LimitReached() const {
  if (cancelled_) return TransferEnd::kCancelled;
  if (Over(seconds(settings_.total_seconds), begun_)) return TransferEnd::kTotalSeconds;
  if (!progress_->reached.connected) {
    if (Over(seconds(settings_.connect_seconds), begun_)) return TransferEnd::kConnectSeconds;
  } else if (Over(seconds(settings_.idle_seconds), progress_->last_move)) {
    return TransferEnd::kIdleSeconds;
  }
  return std::nullopt;
}

bool WinHttpRequest::End(DWORD error) {
  error_ = error;
  end_ = EarlyEnd(error, progress_->reached);
  return false;
}

std::string WinHttpRequest::Header(DWORD which) const {
  DWORD bytes = 0;
  WinHttp().QueryHeaders(get(), which, WINHTTP_HEADER_NAME_BY_INDEX, nullptr, &bytes,
                         WINHTTP_NO_HEADER_INDEX);
  std::wstring text(bytes / sizeof(wchar_t), L'\0');
  if (text.empty() || WinHttp().QueryHeaders(get(), which, WINHTTP_HEADER_NAME_BY_INDEX,
                                             text.data(), &bytes, WINHTTP_NO_HEADER_INDEX) == 0) {
    return {};
  }
  text.resize(bytes / sizeof(wchar_t));
  return Utf8(text);
}

long WinHttpRequest::Status() const {
  DWORD status = 0;
  DWORD size = sizeof status;
  WinHttp().QueryHeaders(get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                         WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX);
  return static_cast<long>(status);
}

}  // namespace vok::windows
