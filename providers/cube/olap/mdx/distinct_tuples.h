// Which tuples occur in a set, of any number.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_set>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/query_limits.h"

namespace vok::olap {

/// Tuples by their members. The sets that they come from stay where they are.
class TupleIndex {
 public:
  explicit TupleIndex(std::size_t arity) : tuples_(0, Hash{arity}, Equal{arity}) {}

  /// False when it was there before.
  bool Add(const MemberId* tuple) { return tuples_.insert(tuple).second; }
  bool Contains(const MemberId* tuple) const { return tuples_.contains(tuple); }

 private:
  struct Hash {
    std::size_t arity;
    std::size_t operator()(const MemberId* tuple) const;
  };
  struct Equal {
    std::size_t arity;
    bool operator()(const MemberId* a, const MemberId* b) const;
  };

  std::unordered_set<const MemberId*, Hash, Equal, ColumnAllocator<const MemberId*>> tuples_;
};

/// Every tuple once, where it occurs first.
TupleSet Distinct(const QueryGuard& guard, const TupleSet& set);

/// The members of one place of the tuples, ascending, each once.
MemberIds MembersAt(const QueryGuard& guard, const TupleSet& set, std::size_t place);

/// The members of each hierarchy, ascending, when the set holds every combination of them; nothing
/// when it is another one.
std::optional<std::vector<MemberIds>> FactorsOf(const QueryGuard& guard, const TupleSet& set);

}  // namespace vok::olap
