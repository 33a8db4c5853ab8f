#include "providers/cube/olap/mdx/operand.h"

#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"

namespace vok::olap {
namespace {

template <typename T>
bool Is(const Operand& operand) {
  return std::holds_alternative<T>(operand);
}

bool FitsTuple(const Operand& operand) {
  return Fits(operand, ArgumentType::kMember) || Is<TupleOperand>(operand);
}

std::vector<MemberPtr> ToTuple(Operand operand) {
  if (auto* tuple = std::get_if<TupleOperand>(&operand)) return std::move(tuple->members);
  std::vector<MemberPtr> members;
  members.push_back(ToMember(std::move(operand)));
  return members;
}

}  // namespace

bool Fits(const Operand& operand, ArgumentType wanted) {
  switch (wanted) {
    case ArgumentType::kHierarchy:
      return Is<HierarchyOperand>(operand);
    case ArgumentType::kLevel:
      return Is<LevelOperand>(operand);
    case ArgumentType::kMember:
      return Is<MemberPtr>(operand) || Is<HierarchyOperand>(operand);
    case ArgumentType::kTuple:
      return FitsTuple(operand);
    case ArgumentType::kSet:
      return FitsTuple(operand) || Is<SetPtr>(operand);
    case ArgumentType::kValue:
      return FitsTuple(operand) || Is<ValuePtr>(operand);
    case ArgumentType::kNumber:
      return FitsTuple(operand) ||
             (Is<ValuePtr>(operand) && std::get<ValuePtr>(operand)->kind() != ValueKind::kText);
    case ArgumentType::kCondition:
      return Is<ValuePtr>(operand) && std::get<ValuePtr>(operand)->kind() == ValueKind::kLogical;
    case ArgumentType::kFlag:
      return Is<FlagOperand>(operand);
    case ArgumentType::kMissing:
      return Is<MissingOperand>(operand);
  }
  return false;
}

Operand Convert(Operand operand, ArgumentType wanted) {
  switch (wanted) {
    case ArgumentType::kHierarchy:
    case ArgumentType::kLevel:
    case ArgumentType::kFlag:
    case ArgumentType::kMissing:
      return operand;
    case ArgumentType::kMember:
      return ToMember(std::move(operand));
    case ArgumentType::kTuple:
      return TupleOperand{ToTuple(std::move(operand))};
    case ArgumentType::kSet:
      return ToSet(std::move(operand));
    case ArgumentType::kValue:
    case ArgumentType::kNumber:
    case ArgumentType::kCondition:
      return ToValue(std::move(operand));
  }
  return operand;
}

MemberPtr ToMember(Operand operand) {
  if (const auto* hierarchy = std::get_if<HierarchyOperand>(&operand)) {
    return NewCurrentMember(hierarchy->hierarchy, hierarchy->place);
  }
  return std::get<MemberPtr>(std::move(operand));
}

SetPtr ToSet(Operand operand) {
  if (Is<SetPtr>(operand)) return std::get<SetPtr>(std::move(operand));
  return NewTupleSet(ToTuple(std::move(operand)));
}

ValuePtr ToValue(Operand operand) {
  if (Is<ValuePtr>(operand)) return std::get<ValuePtr>(std::move(operand));
  return NewCellValue(ToTuple(std::move(operand)));
}

std::string Describe(const Operand& operand) {
  constexpr const char* kNames[] = {"a hierarchy", "a level", "a member", "a tuple",
                                    "a set",       "a value", "a flag",   "nothing"};
  return kNames[operand.index()];
}

std::string Describe(ArgumentType wanted) {
  switch (wanted) {
    case ArgumentType::kHierarchy:
      return "a hierarchy";
    case ArgumentType::kLevel:
      return "a level";
    case ArgumentType::kMember:
      return "a member";
    case ArgumentType::kTuple:
      return "a tuple";
    case ArgumentType::kSet:
      return "a set";
    case ArgumentType::kValue:
      return "a value";
    case ArgumentType::kNumber:
      return "a number";
    case ArgumentType::kCondition:
      return "a condition";
    case ArgumentType::kFlag:
      return "a flag";
    case ArgumentType::kMissing:
      return "nothing";
  }
  return {};
}

}  // namespace vok::olap
