#include "providers/cube/olap/live/answer_reader.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/failure.h"

namespace vok::olap {
namespace {

uint32_t NumberOf(const Field& field) {
  uint32_t number = UINT32_MAX;
  std::from_chars(field.text.data(), field.text.data() + field.text.size(), number);
  return number;
}

bool Holds(const std::vector<IdRange>& ranges, uint32_t leaf) {
  return ranges.empty() || std::any_of(ranges.begin(), ranges.end(), [leaf](const IdRange& range) {
           return range.begin <= leaf && leaf < range.end;
         });
}

}  // namespace

AnswerReader::AnswerReader(const StoredCube& cube, const SliceBatch& batch,
                           const std::vector<uint32_t>& expected, const KeyMap* leaves,
                           FailForKey fail)
    : cube_(cube),
      batch_(batch),
      expected_(expected),
      leaves_(leaves),
      fail_(std::move(fail)),
      levels_(batch.group ? &cube.model.hierarchies[batch.group->hierarchy].leaf_levels()
                          : nullptr) {}

void AnswerReader::AddQuestion(const FactQuery& query) {
  const std::size_t size =
      batch_.group ? levels_->MemberCount(batch_.group->level) : std::size_t{1};
  Growing& growing = growing_.emplace_back();
  for (const uint32_t measure : query.measures) {
    growing.columns.emplace_back(cube_.model.measures[measure].aggregator,
                                 cube_.live->measures[measure].is_binary_fraction, size);
    const auto place = std::lower_bound(batch_.measures.begin(), batch_.measures.end(), measure);
    growing.fields.push_back(static_cast<std::size_t>(place - batch_.measures.begin()));
  }
}

void AnswerReader::Take(RowText& rows) {
  const bool has_parts = batch_.parts.size() > 1;
  const std::size_t key_width =
      batch_.group ? cube_.live->hierarchies[batch_.group->hierarchy].columns.size() : 0;
  while (rows.Next()) {
    const auto key = rows.Fields().first(key_width);
    const auto values = rows.Fields().subspan(key_width, batch_.measures.size());
    const auto rest = rows.Fields().subspan(key_width + batch_.measures.size());
    CheckExpected(rest.last(expected_.size()));
    const auto member = MemberOf(key);
    if (!member) continue;
    AddRow(*member, has_parts ? NumberOf(rest.front()) : 0, values, rows);
  }
}

void AnswerReader::AddRow(uint32_t member, uint32_t part, std::span<const Field> values,
                          const RowText& rows) {
  for (std::size_t question = 0; question < growing_.size(); ++question) {
    const auto& parts = batch_.parts_of_question[question];
    if (!std::binary_search(parts.begin(), parts.end(), part)) continue;
    Growing& growing = growing_[question];
    for (std::size_t index = 0; index < growing.columns.size(); ++index) {
      const Field& value = values[growing.fields[index]];
      if (value.is_null || growing.columns[index].Add(member, value.text)) continue;
      throw Failure(failure_number::kUnspecified, rows.PlaceOf(rows.row()) + ": the sum \"" +
                                                      std::string(value.text) +
                                                      "\" is not a number of at most 38 digits");
    }
  }
}

std::vector<FactColumn> AnswerReader::TakeColumns() {
  std::vector<FactColumn> columns;
  for (const ExactColumn& column : growing_.front().columns) columns.push_back(column.Result());
  growing_.pop_front();
  return columns;
}

void AnswerReader::CheckExpected(std::span<const Field> fields) const {
  for (std::size_t index = 0; index < fields.size(); ++index) {
    if (!fields[index].is_null) fail_(expected_[index], std::string(fields[index].text));
  }
}

std::optional<uint32_t> AnswerReader::MemberOf(std::span<const Field> key) {
  if (!batch_.group) return 0;
  const uint32_t hierarchy = batch_.group->hierarchy;
  if (cube_.live->hierarchies[hierarchy].are_joined) {
    JoinKeys(key, joined_);
  } else if (key.front().is_null) {
    fail_(hierarchy, "NULL");
  } else {
    joined_.assign(key.front().text);
  }
  const uint32_t leaf = leaves_->Find(joined_);
  if (leaf == KeyMap::kAbsent) fail_(hierarchy, joined_);
  if (!Holds(batch_.leaves[hierarchy], leaf)) return std::nullopt;
  return levels_->MemberOf(batch_.group->level, leaf);
}

}  // namespace vok::olap
