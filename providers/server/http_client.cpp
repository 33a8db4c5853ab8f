#include "providers/server/http_client.h"

#include <chrono>
#include <cstdint>
#include <thread>

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/server/login.h"
#include "providers/server/transfer_failure.h"

namespace vok::server {
namespace {

constexpr int kConnectAttempts = 3;
const std::atomic<bool> kNever = false;
constexpr std::chrono::milliseconds kPauseBetweenAttempts{200};

/// The address without user, query and fragment.
std::string Shown(const std::string& address) {
  return WithoutUsers(address.substr(0, address.find_first_of("?#")));
}

/// An "@" anywhere: which of them ends a user's name is read differently by different programs.
const std::string& Checked(const std::string& address, const ServerKind& kind) {
  if (address.find('@') == std::string::npos) return address;
  throw Failure(failure_number::kUnspecified,
                std::string("The address of the ") + kind.name +
                    " has an \"@\", as one with a user's name or password does. Take those out "
                    "of it, and put them as User and Password into Qel.ini, section [" +
                    kind.section + "], or into " + kind.variables + "USER and " + kind.variables +
                    "PASSWORD. Write an \"@\" that belongs there as %40.");
}

/// Looks at each piece before it is read: whether the question was cancelled meanwhile, and whether
/// the answer has an end.
class WatchedBody : public HttpBody {
 public:
  WatchedBody(HttpBody& body, const ServerSettings& settings, const std::string& address,
              const std::atomic<bool>& cancelled)
      : body_(body), settings_(settings), address_(address), cancelled_(cancelled) {}

  void Take(const HttpHead& head, std::string_view piece) override {
    constexpr uint64_t kMegabyte = 1'000'000;
    if (cancelled_) throw TransferFailure({TransferEnd::kCancelled}, settings_, {}, address_);
    taken_ += piece.size();
    const auto most = static_cast<uint64_t>(settings_.answer_megabytes) * kMegabyte;
    if (most > 0 && taken_ > most) throw TooLargeFailure(settings_, address_);
    body_.Take(head, piece);
  }
  std::string_view beginning() const override { return body_.beginning(); }

 private:
  HttpBody& body_;
  const ServerSettings& settings_;
  const std::string& address_;
  const std::atomic<bool>& cancelled_;
  uint64_t taken_ = 0;
};

}  // namespace

HttpClient::HttpClient(const std::string& address, const ServerSettings& settings,
                       const NewHttpTransport& transport, const QueryStop* stop)
    : shown_(Shown(Checked(address, settings.kind))),
      no_login_(WhyNoLogin(settings, address)),
      settings_(no_login_.empty() ? settings : WithoutLogin(settings)),
      transport_(transport(address, settings_)),
      cancelled_(stop != nullptr ? stop->asked() : kNever) {}

HttpHead HttpClient::Post(const std::vector<std::string>& headers, const std::string& content,
                          HttpBody& body) {
  const HttpRequest request{headers, content, cancelled_};
  WatchedBody watched(body, settings_, shown_, cancelled_);
  Transfer transfer{TransferEnd::kNoConnection};
  for (int i = 0; i < kConnectAttempts && transfer.end == TransferEnd::kNoConnection; ++i) {
    if (i > 0) std::this_thread::sleep_for(kPauseBetweenAttempts);
    transfer = cancelled_ ? Transfer{TransferEnd::kCancelled} : transport_->Post(request, watched);
  }
  if (transfer.end != TransferEnd::kWhole) {
    throw TransferFailure(transfer, settings_, body.beginning(), shown_);
  }
  transfer.head.location = Shown(transfer.head.location);
  transfer.head.no_login = no_login_;
  return transfer.head;
}

}  // namespace vok::server
