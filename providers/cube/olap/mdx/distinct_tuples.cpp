#include "providers/cube/olap/mdx/distinct_tuples.h"

#include <algorithm>

namespace vok::olap {

std::size_t TupleIndex::Hash::operator()(const MemberId* tuple) const {
  uint64_t hash = 0x9E3779B97F4A7C15;
  for (std::size_t i = 0; i < arity; ++i) {
    hash = (hash ^ tuple[i]) * 0xD6E8FEB86659FD93;
    hash ^= hash >> 32;
  }
  return hash;
}

bool TupleIndex::Equal::operator()(const MemberId* a, const MemberId* b) const {
  return std::equal(a, a + arity, b);
}

TupleSet Distinct(const QueryGuard& guard, const TupleSet& set) {
  TupleSet distinct{set.hierarchies, {}};
  TupleIndex seen(set.arity());
  for (std::size_t i = 0; i < set.size(); ++i) {
    guard.CheckAt(i);
    if (seen.Add(set.tuple(i))) distinct.Add(set.tuple(i));
  }
  return distinct;
}

MemberIds MembersAt(const QueryGuard& guard, const TupleSet& set, std::size_t place) {
  guard.Check();
  MemberIds members;
  const std::size_t count = set.size();
  for (std::size_t row = 0; row < count; ++row) members.push_back(set.tuple(row)[place]);
  std::size_t comparisons = 0;
  std::sort(members.begin(), members.end(), [&](MemberId a, MemberId b) {
    guard.CheckAt(++comparisons);
    return a < b;
  });
  members.erase(std::unique(members.begin(), members.end()), members.end());
  return members;
}

std::optional<std::vector<MemberIds>> FactorsOf(const QueryGuard& guard, const TupleSet& set) {
  std::vector<MemberIds> factors(set.arity());
  uint64_t combinations = 1;
  for (std::size_t i = 0; i < factors.size(); ++i) {
    factors[i] = MembersAt(guard, set, i);
    combinations *= factors[i].size();
    if (combinations > set.size()) return std::nullopt;
  }
  if (factors.size() > 1 && Distinct(guard, set).size() != combinations) return std::nullopt;
  return factors;
}

}  // namespace vok::olap
