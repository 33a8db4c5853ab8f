#include "tests/interop/xmla_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "tests/interop/xmla_answer.h"

namespace vok::interop {
namespace {

constexpr time_t kPatienceSeconds = 60;

[[noreturn]] void FailSystem(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

class Socket {
 public:
  explicit Socket(uint16_t port) : handle_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (handle_ < 0) FailSystem("No socket");
    const timeval patience{kPatienceSeconds, 0};
    setsockopt(handle_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(handle_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      FailSystem("The server does not take a connection on port " + std::to_string(port));
    }
  }
  ~Socket() { close(handle_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  void Send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t sent = send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent < 0) FailSystem("The query could not be sent");
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
  }

  std::string ReceiveAll() const {
    std::string all;
    std::array<char, 65536> buffer{};
    for (;;) {
      const ssize_t count = recv(handle_, buffer.data(), buffer.size(), 0);
      if (count < 0) FailSystem("The server's answer could not be read");
      if (count == 0) return all;
      all.append(buffer.data(), static_cast<std::size_t>(count));
    }
  }

 private:
  int handle_;
};

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char letter : text) {
    if (letter == '&')
      escaped += "&amp;";
    else if (letter == '<')
      escaped += "&lt;";
    else if (letter == '>')
      escaped += "&gt;";
    else if (letter == '\r')
      escaped += "&#13;";  // a reader of XML would make it a line feed
    else
      escaped += letter;
  }
  return escaped;
}

std::string Envelope(const std::string& catalog, const std::string& mdx) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>)"
         R"(<Envelope xmlns="http://schemas.xmlsoap.org/soap/envelope/"><Body>)"
         R"(<Execute xmlns="urn:schemas-microsoft-com:xml-analysis"><Command><Statement>)" +
         Escaped(mdx) + "</Statement></Command><Properties><PropertyList><Catalog>" +
         Escaped(catalog) +
         "</Catalog><Format>Multidimensional</Format><AxisFormat>TupleFormat</AxisFormat>"
         "<Content>Data</Content></PropertyList></Properties></Execute></Body></Envelope>";
}

}  // namespace

Answer XmlaClient::Run(const std::string& catalog, const std::string& mdx) const {
  return ReadXmlaAnswer(Post(Envelope(catalog, mdx)));
}

std::string XmlaClient::Post(const std::string& body) const {
  const Socket socket(port_);
  socket.Send("POST /xmla HTTP/1.0\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " +
              std::to_string(body.size()) + "\r\n\r\n" + body);
  const std::string answer = socket.ReceiveAll();
  const auto blank = answer.find("\r\n\r\n");
  if (blank == std::string::npos) {
    throw std::runtime_error("The server sent no HTTP: " + answer.substr(0, 500));
  }
  return answer.substr(blank + 4);
}

}  // namespace vok::interop
