// Answers of any bytes, in pieces of any size: read or refused, and the same in one piece as in
// many. The first byte chooses the pieces and whether rows or a cellset is expected.
#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"
#include "providers/cube/xmla/requests.h"
#include "providers/cube/xmla/rowset_reader.h"
#include "tests/fuzz/fuzz.h"

namespace {

using namespace vok::xmla;

constexpr std::size_t kShown = 100;

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

std::string Shown(const CellsetData& data) {
  std::string shown;
  std::size_t cells = 1;
  for (std::size_t axis = 0; axis < data.AxisCount(); ++axis) {
    cells *= data.PositionCount(axis);
    for (std::size_t i = 0; i < data.PositionCount(axis) && i < kShown; ++i) {
      for (std::size_t k = 0; k < data.MembersPerPosition(axis); ++k) {
        shown += data.Member(axis, i, k).name + data.Member(axis, i, k).caption;
      }
    }
  }
  for (std::size_t i = 0; i < cells && i < kShown; ++i) {
    const vok::Value value = data.Cell(i);
    shown += std::to_string(value.storage().index()) + data.FormattedCell(i);
    if (const auto* number = value.As<double>()) shown += std::to_string(*number);
    if (const auto* text = value.As<std::string>()) shown += *text;
  }
  return shown;
}

std::string Cellset(const std::string& xml, uint32_t random) {
  CellsetData data;
  CellsetReader reader(data);
  Read(xml, reader, random);
  return Shown(data);
}

std::string Rows(const std::string& xml, uint32_t random) {
  std::string shown;
  RowsetReader reader({"MEMBER_NAME", "LEVEL_NUMBER"}, kMaxNames,
                      [&](const Row& row) { shown += row[0] + '|' + row[1] + '\n'; });
  Read(xml, reader, random);
  return shown;
}

/// Where a mistake shows depends on the pieces, so failures are the same as long as both fail.
std::string Outcome(std::string (*read)(const std::string&, uint32_t), const std::string& xml,
                    uint32_t random) {
  std::string outcome;
  return Refuses([&] { outcome = read(xml, random); }) ? "failure" : outcome;
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  if (bytes.empty()) return;
  const std::string xml(bytes.substr(1));
  const auto chosen = static_cast<uint8_t>(bytes[0]);
  const auto read = chosen % 2 == 0 ? Cellset : Rows;
  if (Outcome(read, xml, 0) != Outcome(read, xml, chosen * 2654435761U + 1)) std::abort();
}
