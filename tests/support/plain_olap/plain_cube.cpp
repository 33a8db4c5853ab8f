#include "tests/support/plain_olap/plain_cube.h"

#include <algorithm>
#include <set>

namespace vok::plain {
namespace {

bool Covers(const Place& place, const Fact& fact) {
  for (std::size_t h = 1; h < place.at.size(); ++h) {
    bool covers = place.together[h].empty() && IsAtOrBelow(fact.leaves[h], *place.at[h]);
    for (const Member* member : place.together[h]) {
      if (IsAtOrBelow(fact.leaves[h], *member)) covers = true;
    }
    if (!covers) return false;
  }
  return true;
}

Cell Put(Measure measure, const std::vector<const Fact*>& facts) {
  if (facts.empty()) return {};
  double rows = 0, known = 0;
  Cell amount, units, least, most;
  std::set<double> who;
  for (const Fact* fact : facts) {
    ++rows;
    if (fact->amount) {
      amount = amount.value_or(0) + *fact->amount;
      if (!most || *most < *fact->amount) most = fact->amount;
    }
    if (fact->units) {
      ++known;
      units = units.value_or(0) + *fact->units;
      if (!least || *fact->units < *least) least = fact->units;
    }
    if (fact->who) who.insert(*fact->who);
  }
  switch (measure) {
    case Measure::kAmount:
      return amount;
    case Measure::kUnits:
      return units;
    case Measure::kRows:
      return rows;
    case Measure::kKnown:
      return known;
    case Measure::kLeast:
      return least;
    case Measure::kMost:
      return most;
    case Measure::kWho:
      return static_cast<double>(who.size());
  }
  return {};
}

}  // namespace

void Place::Set(const Member& member) {
  at[member.hierarchy] = &member;
  together[member.hierarchy].clear();
}

Place Cube::DefaultPlace() const {
  Place place;
  for (std::size_t h = 0; h < hierarchies.size(); ++h) place.at.push_back(&DefaultMember(h));
  place.together.resize(hierarchies.size());
  return place;
}

Cell Cube::CellAt(const Place& place) const {
  const Member* decides = nullptr;
  for (const Member* member : place.at) {
    if (member->formula && (decides == nullptr || member->solve_order > decides->solve_order)) {
      decides = member;
    }
  }
  if (decides == nullptr) return TakenTogether(place, {{}});
  Place inner = place;
  inner.Set(DefaultMember(decides->hierarchy));
  return decides->formula(inner);
}

Cell Cube::TakenTogether(const Place& place, const std::vector<Members>& tuples) const {
  std::vector<const Fact*> taken;
  for (const Fact& fact : facts) {
    bool is_taken = false;
    for (const Members& tuple : tuples) {
      Place inner = place;
      for (const Member* member : tuple) inner.Set(*member);
      if (Covers(inner, fact)) is_taken = true;
    }
    if (is_taken) taken.push_back(&fact);
  }
  return Put(place.at[0]->measure, taken);
}

Members WalkFrom(const Member& member) {
  Members walk{&member};
  for (const Member* child : member.children) {
    for (const Member* below : WalkFrom(*child)) walk.push_back(below);
  }
  return walk;
}

Members Walk(const Hierarchy& hierarchy) {
  Members walk;
  for (const Member* top : hierarchy.levels.front().members) {
    for (const Member* below : WalkFrom(*top)) walk.push_back(below);
  }
  return walk;
}

bool IsAtOrBelow(const Member* member, const Member& above) {
  while (member != nullptr && member != &above) member = member->parent;
  return member != nullptr;
}

}  // namespace vok::plain
