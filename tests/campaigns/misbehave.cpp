// A cube server that does its clients harm: `misbehave MISDEED` prints its address and serves until
// it is ended; `misbehave` prints the misdeeds. Requests that a misdeed is not about are answered
// well: a catalog "Sales", a cellset of one cell.
#include <libdeflate.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/providers/cube/xmla/answers.h"
#include "tests/providers/cube/xmla/scripted_server.h"

namespace {

using vok::xmla::test::Reply;

/// An answer: what comes first, and what is repeated without an end, or packed up to `kBomb` bytes.
struct Misdeed {
  std::string name;
  bool of_query;  ///< of the answer to a query; else of that to a question for a catalog
  std::string first;
  std::string again;
  bool packed = false;
  int pause = 0;  ///< milliseconds before each repetition
};

constexpr std::size_t kPiece = 65536;
constexpr std::size_t kBomb = 64 << 20;

const std::string kHead = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nConnection: close\r\n";
const std::string kCell = "<Cell CellOrdinal=\"1\"><Value>7</Value></Cell>";
const std::string kRow = "<row><CATALOG_NAME>Sales</CATALOG_NAME></row>";
const std::string kCells = vok::xmla::test::TwoByTwo(kCell);
const std::string kCatalogs = vok::xmla::test::Result(kRow);

std::vector<Misdeed> Misdeeds() {
  const std::string to_cells = "\r\n" + kCells.substr(0, kCells.find("</CellData>"));
  const std::string to_axis = "\r\n" + kCells.substr(0, kCells.find("</Tuples>"));
  const std::string to_rows = "\r\n" + kCatalogs.substr(0, kCatalogs.find("<row>"));
  const std::string tuple = vok::xmla::test::Tuple("[Date].[m1]", "m1");
  return {
      {"slow", true, "\r\n", " ", false, 20},
      {"endless head", true, "", "X-More: " + std::string(1000, 'a') + "\r\n"},
      {"endless blanks", true, "\r\n", " "},
      {"endless text", true, to_cells + "<Cell CellOrdinal=\"1\"><Value>", "a"},
      {"endless attribute", true, to_cells + "<Cell CellOrdinal=\"", "a"},
      {"endless name", true, to_cells + "<", "a"},
      {"endless comment", true, to_cells + "<!--", "a"},
      {"endless depth", true, to_cells, "<a>"},
      {"endless attributes", true, to_cells + "<Cell ", "b='1' "},
      {"repeated cells", true, to_cells, kCell},
      {"endless tuples", true, to_axis, tuple},
      {"endless rows", false, to_rows, kRow},
      {"endless text of a row", false, to_rows + "<row><CATALOG_NAME>", "a"},
      {"packed text", true, to_cells + "<Cell CellOrdinal=\"1\"><Value>", "a", true},
      {"packed cells", true, to_cells, kCell, true},
      {"packed rows", false, to_rows, kRow, true},
  };
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

Reply ReplyOf(const Misdeed& misdeed) {
  if (misdeed.packed) {
    const std::string body = misdeed.first.substr(2) + Repeated(misdeed.again, kBomb);
    return {kHead + "Content-Encoding: gzip\r\n\r\n" + Gzip(body), true};
  }
  const std::size_t piece = misdeed.pause > 0 ? 1 : kPiece;
  return {kHead + misdeed.first, true, false, Repeated(misdeed.again, piece), misdeed.pause};
}

/// Until the process is ended.
void Serve(const Misdeed& misdeed) {
  const Reply harm = ReplyOf(misdeed);
  const vok::xmla::test::ScriptedServer server([&](const std::string& request) {
    const bool query = request.find("<Execute") != std::string::npos;
    return query == misdeed.of_query ? harm
                                     : Reply{kHead + "\r\n" + (query ? kCells : kCatalogs), true};
  });
  std::puts(server.address().c_str());
  std::fflush(stdout);
  ::pause();
}

}  // namespace

int main(int, char** arguments) {
  for (const Misdeed& each : Misdeeds()) {
    if (arguments[1] == nullptr) std::puts(each.name.c_str());
    if (arguments[1] != nullptr && each.name == arguments[1]) Serve(each);
  }
}
