#include "providers/cube/olap/mdx/sort_keys.h"

#include <algorithm>
#include <map>

namespace vok::olap {
namespace {

MemberIds PathOf(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member) {
  MemberIds path;
  for (; member != kNoMember; member = evaluator.Parent(hierarchy, member)) path.push_back(member);
  std::reverse(path.begin(), path.end());
  return path;
}

template <typename T>
int Compare(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

}  // namespace

int CompareCells(const Column& column, std::size_t a, std::size_t b) {
  const auto rank = [&](std::size_t row) {
    const CellState state = column.states[row];
    return state == CellState::kEmpty ? 0 : state == CellState::kText ? 2 : 1;
  };
  if (rank(a) != rank(b)) return Compare(rank(a), rank(b));
  if (rank(a) == 2) return Compare(column.texts[a], column.texts[b]);
  const double x = column.numbers[a];
  const double y = column.numbers[b];
  if (x != x || y != y) return Compare(x != x, y != y);
  return Compare(x, y);
}

void SortByValue(const QueryGuard& guard, const Column& values, bool descending, Rows& rows) {
  SortRows(guard, rows, [&](uint32_t a, uint32_t b) {
    const int order = CompareCells(values, a, b);
    return descending ? order > 0 : order < 0;
  });
}

PathKeys::PathKeys(const CellEvaluator& evaluator, const TupleSet& set) : arity_(set.arity()) {
  paths_.reserve(set.ids.size());
  for (std::size_t i = 0; i < set.ids.size(); ++i) {
    evaluator.guard().CheckAt(i);
    paths_.push_back(PathOf(evaluator, set.hierarchies[i % arity_], set.ids[i]));
  }
}

bool PathKeys::IsBefore(uint32_t a, uint32_t b, bool children_first) const {
  for (std::size_t i = 0; i < arity_; ++i) {
    const Path& x = paths_[a * arity_ + i];
    const Path& y = paths_[b * arity_ + i];
    const auto [p, q] = std::mismatch(x.begin(), x.end(), y.begin(), y.end());
    if (p != x.end() && q != y.end()) return *p < *q;
    if (p != x.end() || q != y.end()) return (p == x.end()) != children_first;
  }
  return false;
}

SiblingKeys::SiblingKeys(CellEvaluator& evaluator, const TupleSet& set,
                         const ValueExpression& value, const Context& context)
    : arity_(set.arity()), paths_(set.ids.size()) {
  for (std::size_t i = 0; i < arity_; ++i) AddColumn(evaluator, set, i, value, context);
}

void SiblingKeys::AddColumn(CellEvaluator& evaluator, const TupleSet& set, std::size_t column,
                            const ValueExpression& value, const Context& context) {
  TupleSet places{
      {set.hierarchies.begin(), set.hierarchies.begin() + static_cast<std::ptrdiff_t>(column) + 1},
      {}};
  std::map<MemberIds, uint32_t, std::less<>, ColumnAllocator<std::pair<const MemberIds, uint32_t>>>
      row_of;
  for (std::size_t i = 0; i < set.size(); ++i) {
    evaluator.guard().CheckAt(i);
    MemberIds place(set.tuple(i), set.tuple(i) + column + 1);
    for (const MemberId member : PathOf(evaluator, set.hierarchies[column], place.back())) {
      place.back() = member;
      const auto [found, is_new] = row_of.try_emplace(place, static_cast<uint32_t>(places.size()));
      if (is_new) places.Add(place.data());
      paths_[i * arity_ + column].push_back({member, found->second});
    }
  }
  values_.push_back(evaluator.ValuesOver(value, places, context));
}

bool SiblingKeys::IsBefore(uint32_t a, uint32_t b, bool descending) const {
  for (std::size_t i = 0; i < arity_; ++i) {
    const Path& x = paths_[a * arity_ + i];
    const Path& y = paths_[b * arity_ + i];
    const auto [p, q] =
        std::mismatch(x.begin(), x.end(), y.begin(), y.end(),
                      [](const Step& s, const Step& t) { return s.member == t.member; });
    if (p != x.end() && q != y.end()) {
      const int order = CompareCells(values_[i], p->row, q->row);
      if (order == 0) return p->member < q->member;
      return descending ? order > 0 : order < 0;
    }
    if (p != x.end() || q != y.end()) return p == x.end();
  }
  return false;
}

}  // namespace vok::olap
