#include "tests/support/reference_olap/reference_cube.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <set>

namespace vok::plain {
namespace {

bool Covers(const Place& place, const Fact& fact) {
  for (std::size_t h = 1; h < place.at.size(); ++h) {
    const auto covers = [&](const Member* member) { return IsAtOrBelow(fact.leaves[h], *member); };
    if (std::none_of(place.at[h].begin(), place.at[h].end(), covers)) return false;
  }
  return true;
}

}  // namespace

Place Place::At(const Tuple& tuple) const {
  Place moved = *this;
  for (const Member* member : tuple) moved.at[member->hierarchy] = {member};
  return moved;
}

Place Cube::DefaultPlace() const {
  Place place;
  for (std::size_t h = 0; h < hierarchies.size(); ++h) place.at.push_back({&DefaultMember(h)});
  return place;
}

Cell Cube::CellAt(const Place& place) const {
  const Member* decides = nullptr;
  for (const Members& taken : place.at) {
    const Member* member = taken[0];
    if (member->formula && (decides == nullptr || member->solve_order > decides->solve_order)) {
      decides = member;
    }
  }
  if (decides == nullptr) return TakenTogether(place, {{}});
  return decides->formula(place.At({&DefaultMember(decides->hierarchy)}));
}

Cell Cube::TakenTogether(const Place& place, const Tuples& tuples) const {
  std::vector<Place> places;
  for (const Tuple& tuple : tuples) places.push_back(place.At(tuple));
  const Measure& measure = *place.at[0][0]->measure;
  std::vector<Cell> values;
  for (const Fact& fact : facts) {
    if (std::any_of(places.begin(), places.end(),
                    [&](const Place& each) { return Covers(each, fact); })) {
      values.push_back(fact.*measure.cell);
    }
  }
  return Folded(measure.aggregator, values);
}

Cell Folded(std::string_view how, const std::vector<Cell>& values) {
  if (values.empty()) return {};
  std::vector<double> known;
  for (const Cell& value : values) {
    if (value) known.push_back(*value);
  }
  if (how == "count") return known.size();
  if (how == "distinct-count") return std::set<double>(known.begin(), known.end()).size();
  if (known.empty()) return {};
  if (how == "min") return *std::min_element(known.begin(), known.end());
  if (how == "max") return *std::max_element(known.begin(), known.end());
  const double sum = std::accumulate(known.begin(), known.end(), 0.0);
  return how == "avg" ? sum / static_cast<double>(known.size()) : sum;
}

Members WalkFrom(const Member& member) {
  Members walk{&member};
  for (const Member* child : member.children) {
    for (const Member* below : WalkFrom(*child)) walk.push_back(below);
  }
  return walk;
}

bool IsAtOrBelow(const Member* member, const Member& above) {
  while (member != nullptr && member != &above) member = member->parent;
  return member != nullptr;
}

std::string Shown(double number) {
  char buffer[40];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

}  // namespace vok::plain
