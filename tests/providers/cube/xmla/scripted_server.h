// A small HTTP server on this machine that answers as a test tells it to, well or badly.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "test_system.h"

namespace vok::xmla::test {

/// What goes back for one request: bytes as they are, status line and all.
struct Reply {
  std::string bytes;
  bool close = false;      ///< ends the connection after them
  bool silent = false;     ///< then sends nothing more, and waits for the client to go
  std::string again = {};  ///< sent without an end, each time after so many milliseconds
  int pause = 0;
};

/// A whole reply, with its length.
Reply Http(const std::string& status, const std::string& content_type, const std::string& body,
           const std::string& more_headers = "");

class ScriptedServer {
 public:
  /// `answer` gets a request's head and body; it runs on a thread of the server's.
  explicit ScriptedServer(std::function<Reply(const std::string& request)> answer);
  ~ScriptedServer();

  std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/xmla"; }
  int connections() const { return connections_; }
  int requests() const { return requests_; }

 private:
  void Run();
  void Serve(Socket connection);

  std::function<Reply(const std::string&)> answer_;
  Socket listener_;
  int port_ = 0;
  std::atomic<bool> stopped_ = false;
  std::atomic<int> connections_ = 0;
  std::atomic<int> requests_ = 0;
  std::thread thread_;
  std::vector<std::thread> serving_;  // one for each connection
};

}  // namespace vok::xmla::test
