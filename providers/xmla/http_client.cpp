#include "providers/xmla/http_client.h"

#include <chrono>
#include <thread>

#include "platform/failure.h"
#include "providers/xmla/http_failure.h"

namespace vok::xmla {
namespace {

constexpr int kConnectAttempts = 3;
constexpr std::chrono::milliseconds kPauseBetweenAttempts{200};

/// The address without query and fragment.
std::string Shown(const std::string& address) {
  return address.substr(0, address.find_first_of("?#"));
}

const std::string& Checked(const std::string& address) {
  const std::size_t host = address.find("://") + 3;
  const std::string authority = address.substr(host, address.find_first_of("/?#", host) - host);
  if (authority.find('@') == std::string::npos) return address;
  throw Failure(failure_number::kUnspecified,
                "The address of the cube server bears a user's name or password. Take them out of "
                "the cube file's name, and put them as User and Password into Qel.ini, section "
                "[Xmla], or into VOKCUBE_XMLA_USER and VOKCUBE_XMLA_PASSWORD.");
}

}  // namespace

HttpClient::HttpClient(const std::string& address, const XmlaSettings& settings,
                       const NewHttpTransport& transport)
    : shown_(Shown(address)),
      settings_(settings),
      transport_(transport(Checked(address), settings)) {}

HttpHead HttpClient::Post(const std::string& action, const std::string& content, HttpBody& body) {
  const HttpRequest request{
      {"Content-Type: text/xml; charset=utf-8", "SOAPAction: \"" + action + "\"",
       "Accept: text/xml, application/xml, application/soap+xml"},
      content,
      cancelled_};
  Transfer transfer{TransferEnd::kNoConnection};
  for (int i = 0; i < kConnectAttempts && transfer.end == TransferEnd::kNoConnection; ++i) {
    if (i > 0) std::this_thread::sleep_for(kPauseBetweenAttempts);
    transfer = cancelled_ ? Transfer{TransferEnd::kCancelled} : transport_->Post(request, body);
  }
  if (transfer.end != TransferEnd::kWhole) {
    throw TransferFailure(transfer, settings_, body.beginning(), shown_);
  }
  transfer.head.location = Shown(transfer.head.location);
  return transfer.head;
}

}  // namespace vok::xmla
