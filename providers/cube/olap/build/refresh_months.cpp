#include "providers/cube/olap/build/refresh_months.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace vok::olap {
namespace {

constexpr int kMonthsOfYear = 12;

const Level* LevelOf(const NewHierarchy& hierarchy, LevelKind kind) {
  for (const Level& level : hierarchy.levels) {
    if (level.kind == kind) return &level;
  }
  return nullptr;
}

MemberId Above(const NewHierarchy& hierarchy, MemberId member, const Level& level) {
  while (member >= level.members.end) member = hierarchy.members[member].parent;
  return member;
}

struct Key {
  int64_t number = 0;  // of all keys, or of none
  std::string_view text;
  bool is_wanted = false;
};

bool ReadNumber(Key& key) {
  const char* end = key.text.data() + key.text.size();
  const auto read = std::from_chars(key.text.data(), end, key.number);
  return read.ec == std::errc() && read.ptr == end;
}

/// To a database too, dates of one length follow each other as their letters do.
bool AreDates(const std::vector<Key>& keys) {
  return std::all_of(keys.begin(), keys.end(), [&](const Key& key) {
    return key.text.size() == keys.front().text.size() && key.text.find('-') != key.text.npos &&
           key.text.find_first_not_of("0123456789-:. T") == key.text.npos;
  });
}

/// In the order of time.
std::vector<Key> SortedKeys(const RecordedRows& rows, const std::vector<bool>& wanted,
                            const std::string& table) {
  std::vector<Key> keys;
  for (std::size_t row = 0; row < rows.leaves.size(); ++row) {
    keys.push_back({0, *rows.fields[row], wanted[rows.leaves[row]]});
  }
  if (!std::all_of(keys.begin(), keys.end(), ReadNumber)) {
    if (!AreDates(keys)) {
      throw BadInput("table " + Quoted(table),
                     "its keys are neither whole numbers nor dates such as 2024-01-31, so facts of "
                     "single months cannot be asked for. Build the whole cube: vokcube cube build");
    }
    for (Key& key : keys) key.number = 0;
  }
  std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
    return a.number != b.number ? a.number < b.number : a.text < b.text;
  });
  return keys;
}

}  // namespace

bool MonthChoice::Has(int month) const {
  return (since && month >= *since) ||
         std::find(months.begin(), months.end(), month) != months.end();
}

std::optional<uint32_t> HierarchyOfMonths(const CubeSchema& schema) {
  uint32_t index = 0;
  for (const DimensionSchema& dimension : schema.dimensions) {
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      const auto has = [&](LevelKind kind) {
        return std::any_of(hierarchy.levels.begin(), hierarchy.levels.end(),
                           [kind](const LevelSchema& level) { return level.kind == kind; });
      };
      const bool has_key = !dimension.foreign_key.empty() && !hierarchy.table.name.empty();
      if (has_key && has(LevelKind::kYears) && has(LevelKind::kMonths)) return index;
      ++index;
    }
  }
  return std::nullopt;
}

std::vector<int> MonthsOfLeaves(const NewHierarchy& hierarchy, const MonthOf& month_of) {
  const Level& months = *LevelOf(hierarchy, LevelKind::kMonths);
  const Level& years = *LevelOf(hierarchy, LevelKind::kYears);
  std::vector<int> month_of_member;
  for (MemberId member = months.members.begin; member < months.members.end; ++member) {
    const std::string& year = hierarchy.members[Above(hierarchy, member, years)].name;
    const std::string& month = hierarchy.members[member].name;
    month_of_member.push_back(month_of(year, month, year + " " + month));
  }
  std::vector<int> found;
  for (uint32_t leaf = 0; leaf < hierarchy.LeafCount(); ++leaf) {
    const MemberId member = hierarchy.levels.back().members.begin + leaf;
    found.push_back(month_of_member[Above(hierarchy, member, months) - months.members.begin]);
  }
  return found;
}

std::vector<KeyRange> RangesOf(const RecordedRows& keys, const std::vector<bool>& wanted,
                               bool is_open, const std::string& table) {
  const auto sorted = SortedKeys(keys, wanted, table);
  std::vector<KeyRange> ranges;
  bool was_wanted = false;
  for (const Key& key : sorted) {
    if (key.is_wanted && !was_wanted) ranges.push_back({std::string(key.text)});
    if (key.is_wanted) ranges.back().high = key.text;
    was_wanted = key.is_wanted;
  }
  if (is_open && was_wanted) ranges.back().high.clear();
  return ranges;
}

std::string ShownMonth(int month) {
  const int number = month % kMonthsOfYear + 1;
  return std::to_string(month / kMonthsOfYear) + (number < 10 ? "-0" : "-") +
         std::to_string(number);
}

}  // namespace vok::olap
