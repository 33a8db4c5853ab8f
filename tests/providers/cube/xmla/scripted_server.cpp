#include "tests/providers/cube/xmla/scripted_server.h"

#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>

namespace vok::xmla::test {
namespace {

constexpr int kGlance = 10;  // milliseconds

/// Waits until there is something to read; false when the server is to stop.
bool Readable(Socket handle, const std::atomic<bool>& stopped) {
  pollfd wait{};
  wait.fd = handle;
  wait.events = POLLIN;
  while (!stopped) {
    if (Poll(wait, kGlance) > 0) return true;
  }
  return false;
}

std::size_t BodyLength(const std::string& head) {
  const std::string name = "Content-Length: ";
  const std::size_t at = head.find(name);
  return at == std::string::npos ? 0 : std::stoul(head.substr(at + name.size()));
}

/// The next request; nothing when the client is gone.
std::optional<std::string> Receive(Socket connection, const std::atomic<bool>& stopped) {
  std::string request;
  std::array<char, 4096> buffer{};
  for (;;) {
    const std::size_t blank = request.find("\r\n\r\n");
    if (blank != std::string::npos && request.size() >= blank + 4 + BodyLength(request)) {
      return request;
    }
    if (!Readable(connection, stopped)) return std::nullopt;
    const auto count = recv(connection, buffer.data(), buffer.size(), 0);
    if (count <= 0) return std::nullopt;
    request.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

Reply Http(const std::string& status, const std::string& content_type, const std::string& body,
           const std::string& more_headers) {
  const std::string type = content_type.empty() ? "" : "Content-Type: " + content_type + "\r\n";
  return {"HTTP/1.1 " + status + "\r\n" + type + more_headers +
          "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body};
}

ScriptedServer::ScriptedServer(std::function<Reply(const std::string&)> answer)
    : answer_(std::move(answer)) {
  StartSockets();
  listener_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* raw = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, raw, size) != 0 || listen(listener_, 8) != 0 ||
      getsockname(listener_, raw, &size) != 0) {
    throw std::runtime_error("no server for the test");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Run(); });
}

ScriptedServer::~ScriptedServer() {
  stopped_ = true;
  thread_.join();
  for (std::thread& each : serving_) each.join();
  CloseSocket(listener_);
}

void ScriptedServer::Run() {
  while (Readable(listener_, stopped_)) {
    const Socket connection = accept(listener_, nullptr, nullptr);
    ++connections_;
    serving_.emplace_back([this, connection] {
      Serve(connection);
      CloseSocket(connection);
    });
  }
}

void ScriptedServer::Serve(Socket connection) {
  while (const auto request = Receive(connection, stopped_)) {
    ++requests_;
    const Reply reply = answer_(*request);
    send(connection, reply.bytes.data(), reply.bytes.size(), kSendFlags);
    while (!reply.again.empty()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(reply.pause));
      if (send(connection, reply.again.data(), reply.again.size(), kSendFlags) <= 0) return;
    }
    if (reply.close) return;
    if (reply.silent) Receive(connection, stopped_);
  }
}

}  // namespace vok::xmla::test
