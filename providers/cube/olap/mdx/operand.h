// What a part of a query may turn out to be, and what may stand for what: a hierarchy for its
// current member, a member for a tuple, a tuple for a set of one or for the value of its cell.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

struct HierarchyOperand {
  HierarchyId hierarchy = kMeasures;
  Place place = {};  ///< of its name
};
struct LevelOperand {
  HierarchyId hierarchy = kMeasures;
  uint32_t level = 0;
};
struct TupleOperand {
  std::vector<MemberPtr> members;
};

/// A word such as DESC, in capitals.
struct FlagOperand {
  std::string word;
};
/// An argument left out between two commas.
struct MissingOperand {};

using Operand = std::variant<HierarchyOperand, LevelOperand, MemberPtr, TupleOperand, SetPtr,
                             ValuePtr, FlagOperand, MissingOperand>;

/// Types of arguments, as signatures write them.
enum class ArgumentType : char {
  kHierarchy = 'h',
  kLevel = 'l',
  kMember = 'm',
  kTuple = 't',
  kSet = 's',
  kValue = 'v',  ///< a number or a text
  kNumber = 'n',
  kCondition = 'b',  ///< true or false
  kFlag = 'f',
  kMissing = '_'
};

bool Fits(const Operand& operand, ArgumentType wanted);
/// The operand as what is wanted; it must fit.
Operand Convert(Operand operand, ArgumentType wanted);

MemberPtr ToMember(Operand operand);
SetPtr ToSet(Operand operand);
ValuePtr ToValue(Operand operand);

/// "a member"; what the operand is, or what is wanted, in words.
std::string Describe(const Operand& operand);
std::string Describe(ArgumentType wanted);

}  // namespace vok::olap
