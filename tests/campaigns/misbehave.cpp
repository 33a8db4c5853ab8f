// A cube server that does its clients harm:
//   misbehave MISDEED COMMAND...
//
// runs the command with the server's address for each argument "URL", and prints how it ended:
// "STATUS CPU-MILLISECONDS MILLISECONDS PEAK-KILOBYTES". What the command prints goes to standard
// error. `misbehave --list` prints the misdeeds. Requests that a misdeed is not about are answered
// well: a catalog "Sales", a cellset of one cell.
#include <arpa/inet.h>
#include <libdeflate.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "tests/providers/cube/xmla/answers.h"

namespace {

using vok::xmla::test::Envelope;
using vok::xmla::test::Result;

constexpr long kForever = -1;
constexpr long kPacked = -2;  // repeated up to `kBomb` bytes, and all of it sent packed

/// An answer: what comes first, what is repeated how many times, what comes last.
struct Misdeed {
  std::string name;
  bool of_query = true;  ///< of the answer to a query; else of that to a question for a catalog
  std::string first;
  std::string again;
  long times = kForever;
  std::string last;
  int pause = 0;  ///< milliseconds before each repetition
};

std::string Head(const std::string& more = "") {
  return "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nConnection: close\r\n" + more + "\r\n";
}

/// What stands before the part of the sample's result that begins with `mark`.
std::string Before(const std::string& mark, const std::string& xml) {
  return Head() + xml.substr(0, xml.find(mark));
}

std::string Repeated(const std::string& text, std::size_t bytes) {
  std::string all;
  while (all.size() < bytes) all += text;
  return all;
}

std::string Gzip(const std::string& text) {
  libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
  std::string packed(libdeflate_gzip_compress_bound(compressor, text.size()), '\0');
  packed.resize(
      libdeflate_gzip_compress(compressor, text.data(), text.size(), packed.data(), packed.size()));
  libdeflate_free_compressor(compressor);
  return packed;
}

std::string Cells() {
  return vok::xmla::test::TwoByTwo("<Cell CellOrdinal=\"0\"><Value>7</Value></Cell>");
}
std::string Catalogs() { return Result("<row><CATALOG_NAME>Sales</CATALOG_NAME></row>"); }

constexpr std::size_t kPiece = 65536;
constexpr std::size_t kBomb = 64 << 20;

std::vector<Misdeed> Misdeeds() {
  const std::string cells = Cells();
  const std::string to_cells = Before("</CellData>", cells);
  const std::string to_axis = Before("</Tuples>", cells);
  const std::string to_rows = Before("<row>", Catalogs());
  const std::string piece = Repeated("a", kPiece);
  const std::string cell = "<Cell CellOrdinal=\"1\"><Value>7</Value></Cell>";
  const std::string row = "<row><CATALOG_NAME>Sales</CATALOG_NAME></row>";
  return {
      {"silent", true, "", "", 0, "", 0},
      {"silent to the first question", false, "", "", 0, "", 0},
      {"slow", true, Head(), " ", kForever, "", 20},
      {"closes in the middle of the head", true, "HTTP/1.1 200 OK\r\nCont", "", 0, "", 0},
      {"closes in the middle", true, to_cells, cell, 3, "<Cell CellOrd", 0},
      {"closes before the promised length", true, Head("Content-Length: 99999\r\n") + cells, "", 0,
       "", 0},
      {"no XML", true, Head(), "\x01\xff{]", 100, "", 0},
      {"endless head", true, "HTTP/1.1 200 OK\r\n", "X-More: " + piece.substr(0, 1000) + "\r\n",
       kForever, "", 0},
      {"endless blanks", true, Head(), Repeated(" ", kPiece), kForever, "", 0},
      {"endless text", true, to_cells + "<Cell CellOrdinal=\"1\"><Value>", piece, kForever, "", 0},
      {"endless attribute", true, to_cells + "<Cell CellOrdinal=\"", piece, kForever, "", 0},
      {"endless name", true, to_cells + "<", piece, kForever, "", 0},
      {"endless comment", true, to_cells + "<!--", piece, kForever, "", 0},
      {"attribute of 16 MB", true, to_cells + "<Cell CellOrdinal=\"", piece, 256, "\"/>", 0},
      {"endless depth", true, to_cells, Repeated("<a>", kPiece / 3 * 3), kForever, "", 0},
      {"endless attributes", true, to_cells + "<Cell ", "b='1' ", kForever, "", 0},
      {"repeated cells", true, to_cells, Repeated(cell, kPiece), kForever, "", 0},
      {"endless tuples", true, to_axis,
       Repeated(vok::xmla::test::Tuple("[Date].[m1]", "m1"), kPiece), kForever, "", 0},
      {"endless rows", false, to_rows, Repeated(row, kPiece), kForever, "", 0},
      {"endless text of a row", false, to_rows + "<row><CATALOG_NAME>", piece, kForever, "", 0},
      {"packed text", true, to_cells + "<Cell CellOrdinal=\"1\"><Value>", piece, kPacked, "", 0},
      {"packed cells", true, to_cells, cell, kPacked, "", 0},
      {"packed rows", false, to_rows, row, kPacked, "", 0},
      {"sends itself", true,
       "HTTP/1.1 307 Temporary Redirect\r\nLocation: /xmla\r\nContent-Length: 0"
       "\r\n\r\n",
       "", 0, "", 0},
      {"failure that claims success", true,
       Head() + vok::xmla::test::Fault("No\n0: all is well", "\x1b[2J"), "", 0, "", 0},
  };
}

bool Send(int connection, const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

/// Packing takes its time: it is done before the client waits for it.
void Pack(Misdeed& misdeed) {
  const std::string body = misdeed.first.substr(Head().size()) + Repeated(misdeed.again, kBomb);
  misdeed.first = Head("Content-Encoding: gzip\r\n") + Gzip(body);
  misdeed.times = 0;
}

void Do(const Misdeed& misdeed, int connection) {
  bool here = Send(connection, misdeed.first);
  for (long i = 0; here && i != misdeed.times; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(misdeed.pause));
    here = Send(connection, misdeed.again);
  }
  if (here) Send(connection, misdeed.last);
}

/// The next request, whole; "" when the client is gone.
std::string Receive(int connection) {
  std::string request;
  char buffer[4096];
  for (;;) {
    const std::size_t blank = request.find("\r\n\r\n");
    if (blank != std::string::npos && request.find("</SOAP-ENV:Envelope>") != std::string::npos) {
      return request;
    }
    const ssize_t count = recv(connection, buffer, sizeof buffer, 0);
    if (count <= 0) return {};
    request.append(buffer, static_cast<std::size_t>(count));
  }
}

void Serve(const Misdeed& misdeed, int connection) {
  const std::string request = Receive(connection);
  const bool query = request.find("<Execute") != std::string::npos;
  if (query == misdeed.of_query) {
    Do(misdeed, connection);
    if (misdeed.first.empty()) Receive(connection);  // silent until the client goes
  } else {
    Send(connection, Head() + (query ? Cells() : Catalogs()));
  }
  close(connection);
}

int Listen(std::string& address) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof place;
  auto* raw = reinterpret_cast<sockaddr*>(&place);
  if (bind(listener, raw, size) != 0 || listen(listener, 8) != 0 ||
      getsockname(listener, raw, &size) != 0) {
    return -1;
  }
  address = "http://127.0.0.1:" + std::to_string(ntohs(place.sin_port)) + "/xmla";
  return listener;
}

pid_t Start(char** command, const std::string& address) {
  std::vector<char*> words;
  for (; *command != nullptr; ++command) {
    words.push_back(std::string(*command) == "URL" ? const_cast<char*>(address.c_str()) : *command);
  }
  words.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  dup2(STDERR_FILENO, STDOUT_FILENO);
  execvp(words.front(), words.data());
  _exit(127);
}

long Milliseconds(const timeval& time) { return time.tv_sec * 1000 + time.tv_usec / 1000; }

/// Waits for the command and prints how it ended.
void Measure(pid_t child) {
  const auto begun = std::chrono::steady_clock::now();
  int status = 0;
  rusage use{};
  wait4(child, &status, 0, &use);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begun;
  std::printf("%d %ld %.0f %ld\n", WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
              Milliseconds(use.ru_utime) + Milliseconds(use.ru_stime), taken.count(),
              use.ru_maxrss);
  std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
  const auto misdeeds = Misdeeds();
  const std::string wanted = count > 1 ? arguments[1] : "--list";
  if (wanted == "--list") {
    for (const Misdeed& each : misdeeds) std::puts(each.name.c_str());
    return 0;
  }
  const auto found = std::find_if(misdeeds.begin(), misdeeds.end(),
                                  [&](const Misdeed& each) { return each.name == wanted; });
  std::string address;
  const int listener = Listen(address);
  if (found == misdeeds.end() || count < 3 || listener < 0) return 2;
  Misdeed misdeed = *found;
  if (misdeed.times == kPacked) Pack(misdeed);
  const pid_t child = Start(arguments + 2, address);
  std::thread([&] {
    for (;;) {
      const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
      if (connection >= 0) std::thread(Serve, misdeed, connection).detach();
    }
  }).detach();
  Measure(child);
  std::_Exit(0);
}
