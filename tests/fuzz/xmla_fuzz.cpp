// Answers of any bytes, in pieces of any size: read or refused, and the same in one piece as in
// many. The first byte chooses the pieces and whether rows or a cellset is expected.
#include <memory>

#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"
#include "providers/cube/xmla/rowset_reader.h"
#include "providers/cube/xmla/server.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/answers/answer.h"

namespace {

using namespace vok::xmla;

constexpr std::size_t kMostCells = 1000;

/// Feeds the answer; `random` chooses the pieces, 0: one.
void Read(const std::string& xml, ResultReader& reader, uint32_t random) {
  const vok::HttpHead head{200, "text/xml", ""};
  Answer answer("http://h", vok::failure_number::kSyntax, reader);
  for (std::size_t i = 0; i < xml.size();) {
    const std::size_t size = random == 0 ? xml.size() : 1 + (random >> 16) % 97;
    answer.Take(head, std::string_view(xml).substr(i, size));
    random = random == 0 ? 0 : random * 1664525 + 1013904223;
    i += size;
  }
  answer.Finish(head);
}

/// Where a mistake shows depends on the pieces, so failures are the same as long as both fail.
std::string Outcome(const std::string& xml, bool is_cellset, uint32_t random) {
  auto data = std::make_unique<CellsetData>(kMostCells);
  CellsetReader cellset(*data);
  std::string shown;
  RowsetReader rows({"MEMBER_NAME", "LEVEL_NUMBER"}, kMaxNames,
                    [&](const Row& row) { shown += row[0] + '|' + row[1] + '\n'; });
  const bool fails = Refuses([&] {
    Read(xml, is_cellset ? static_cast<ResultReader&>(cellset) : rows, random);
    if (is_cellset) shown = vok::test::Shown({"", std::move(data)}, true);
  });
  return fails ? "failure" : shown;
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  if (bytes.empty()) return;
  const std::string xml(bytes.substr(1));
  const auto chosen = static_cast<uint8_t>(bytes[0]);
  const bool is_cellset = chosen % 2 == 0;
  const uint32_t random = chosen * 2654435761U + 1;
  if (Outcome(xml, is_cellset, 0) != Outcome(xml, is_cellset, random)) std::abort();
}
