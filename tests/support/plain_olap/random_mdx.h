// Random queries on a cube: each part is made as a text and as what it means, side by side.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/plain_olap/plain_sets.h"
#include "tests/support/plain_olap/random_cube.h"

namespace vok::plain {

/// A part of a query: its text, and what it gives where a cell stands.
template <typename Result>
struct Term {
  std::string text;
  std::function<Result(const Place&)> at;
};
using NumberTerm = Term<Cell>;
using ConditionTerm = Term<bool>;
/// nullptr: a member that is not there.
using MemberTerm = Term<const Member*>;
using SetTerm = Term<Tuples>;
using Hierarchies = std::vector<std::size_t>;

struct RandomQuery {
  std::string mdx;
  /// The axes and cells, in the words of the MDX case files.
  std::string answer;
};

/// Queries with calculated members, a named set, one to three axes and a slicer; expressions nest
/// three deep.
class RandomMdx {
 public:
  /// `tame`: only what a server of another make answers by the same rules; no members that may be
  /// missing, none that change from cell to cell, no pairs, nothing twice, no blank branches, no
  /// NON EMPTY on sets that pick.
  RandomMdx(const Cube& cube, std::string cube_name, uint64_t seed, bool tame);

  RandomQuery Next();

 private:
  using Words = std::vector<std::string>;

  // random_mdx.cpp
  void ChooseSlicer();
  void AddCalculatedMembers();
  void AddNamedSet();
  SetTerm Axis(const Hierarchies& hierarchies);
  std::vector<Tuples> WithoutEmpty(std::vector<Tuples> axes, const std::vector<bool>& wanted);
  std::vector<Cell> Cells(const std::vector<Tuples>& axes) const;
  Member& NewCalculated(std::size_t hierarchy, const std::string& name, NumberTerm formula);

  // random_sets.cpp
  const Member& Stored(std::size_t hierarchy);
  std::size_t AnyHierarchy() { return dice_.OneOf(free_); }
  Hierarchies AnyHierarchies();
  std::size_t AnyLevel(std::size_t hierarchy);
  MemberTerm AMember(std::size_t hierarchy, int depth);
  MemberTerm MovedMember(std::size_t hierarchy, int depth);
  SetTerm Set(const Hierarchies& hierarchies, int depth);
  SetTerm SetOfMembers(std::size_t hierarchy, int depth);
  SetTerm SetOfTime(int depth);
  SetTerm SetOfDescendants(std::size_t hierarchy, int depth);
  SetTerm SetOfTuples(const Hierarchies& hierarchies, int depth);
  SetTerm CrossedSets(const SetTerm& a, const SetTerm& b);
  SetTerm CombinedSet(const Hierarchies& hierarchies, int depth);
  SetTerm PartOfSet(const Hierarchies& hierarchies, int depth);
  SetTerm ValuedSet(const Hierarchies& hierarchies, int depth);

  // random_values.cpp
  NumberTerm Number(int depth);
  NumberTerm Literal(int limit);
  NumberTerm CellOf(int depth);
  NumberTerm Computed(int depth);
  NumberTerm Chosen(int depth);
  NumberTerm Folded(int depth);
  NumberTerm Aggregate(int depth);
  NumberTerm Counted(int depth);
  ConditionTerm Condition(int depth);
  ConditionTerm Comparison(int depth);

  const Cube& cube_;
  std::string cube_name_;
  Dice dice_;
  bool tame_;

  // Of the query that is being made.
  std::deque<Member> calculated_;
  Place base_;
  std::string with_;
  std::string where_;
  Hierarchies free_;      ///< all but the measures and those of the slicer
  Hierarchies named_of_;  ///< the hierarchies of the named set, when there is one
  Tuples named_;
};

}  // namespace vok::plain
