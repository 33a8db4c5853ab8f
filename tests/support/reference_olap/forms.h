// The forms of MDX that random expressions are made of, each with what it means.
//
// In a form's text stand, for its parts:
//   %m member            %s set             %v number          %c condition
//   %w %2                a member, a set of the second hierarchy; %1 a set of the first one
//   %d %e                a stored member; another of the level of the part before
//   %h %l %P             the hierarchy; a level of it; "Ytd", "Qtd" or "Mtd", for time alone
//   %M                   a measure
//   %n %k %i             a whole number, perhaps below 0; not below 0; a literal
//   %(a|b|...)           one of the words
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/reference_olap/reference_cube.h"

namespace vok::plain {

/// Tuples (a member: one of it, none when it is missing), a number (a condition: 0 or 1), or both
/// (a level: its members and its number).
struct Result {
  Result(Tuples of_set, Cell of_number = {}) : tuples(std::move(of_set)), number(of_number) {}
  Result(Cell of_number) : number(of_number) {}
  Result(const Member* member) : tuples(member == nullptr ? Tuples{} : Tuples{{member}}) {}

  Tuples tuples;
  Cell number;
};

/// A part of a query: its text, and what it gives where a cell stands.
struct Term {
  std::string text;
  std::function<Result(const Place&)> at;
};

/// One member was asked for where the slicer has several of the hierarchy.
struct UnknownMember {};

/// The same wherever a cell stands.
Term Constant(std::string text, const Result& result);

using ValueAt = std::function<Cell(const Tuple&)>;

/// The parts of a form, where a cell stands.
struct Call {
  const Cube& cube;
  const Place& place;
  const std::vector<Term>& parts;

  const std::string& Word(std::size_t part) const { return parts[part].text; }
  Tuples Set(std::size_t part) const { return parts[part].at(place).tuples; }
  /// nullptr: missing.
  const Member* One(std::size_t part) const {
    const Tuples tuples = Set(part);
    if (tuples.size() > 1) throw UnknownMember();
    return tuples.empty() ? nullptr : tuples[0][0];
  }
  Cell Number(std::size_t part, const Tuple& at = {}) const {
    return parts[part].at(place.At(at)).number;
  }
  int Whole(std::size_t part) const { return static_cast<int>(Number(part).value_or(0)); }
  bool Holds(std::size_t part, const Tuple& at = {}) const { return Number(part, at) == 1; }
  ValueAt Values(std::size_t part) const {
    return [this, part](const Tuple& tuple) { return Number(part, tuple); };
  }
};

struct Form {
  /// Whether the text has a part of one of the letters.
  bool HasPart(std::string_view letters) const;

  std::string_view text;
  std::function<Result(const Call&)> at;
};
/// The tame ones are answered by the same rules by a server of another make.
struct Forms {
  std::vector<Form> tame;
  std::vector<Form> wild;
};
extern const Forms kMemberForms, kSetForms, kNumberForms, kConditionForms;

/// A tuple of each member.
Tuples Singles(const Members& members);
/// Each pair of a tuple of the first with one of the second.
Tuples Pairs(const Tuples& first, const Tuples& second);

}  // namespace vok::plain
