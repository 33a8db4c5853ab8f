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
  return Fits(operand, Wanted::kMember) || Is<TupleOperand>(operand);
}

std::vector<MemberPtr> ToTuple(Operand operand) {
  if (auto* tuple = std::get_if<TupleOperand>(&operand)) return std::move(tuple->members);
  std::vector<MemberPtr> members;
  members.push_back(ToMember(std::move(operand)));
  return members;
}

}  // namespace

bool Fits(const Operand& operand, Wanted wanted) {
  switch (wanted) {
    case Wanted::kHierarchy:
      return Is<HierarchyOperand>(operand);
    case Wanted::kLevel:
      return Is<LevelOperand>(operand);
    case Wanted::kMember:
      return Is<MemberPtr>(operand) || Is<HierarchyOperand>(operand);
    case Wanted::kTuple:
      return FitsTuple(operand);
    case Wanted::kSet:
      return FitsTuple(operand) || Is<SetPtr>(operand);
    case Wanted::kValue:
      return FitsTuple(operand) || Is<ValuePtr>(operand);
    case Wanted::kNumber:
      return FitsTuple(operand) ||
             (Is<ValuePtr>(operand) && std::get<ValuePtr>(operand)->kind() != ValueKind::kText);
    case Wanted::kCondition:
      return Is<ValuePtr>(operand) && std::get<ValuePtr>(operand)->kind() == ValueKind::kLogical;
    case Wanted::kFlag:
      return Is<FlagOperand>(operand);
    case Wanted::kMissing:
      return Is<MissingOperand>(operand);
  }
  return false;
}

Operand Convert(Operand operand, Wanted wanted) {
  switch (wanted) {
    case Wanted::kHierarchy:
    case Wanted::kLevel:
    case Wanted::kFlag:
    case Wanted::kMissing:
      return operand;
    case Wanted::kMember:
      return ToMember(std::move(operand));
    case Wanted::kTuple:
      return TupleOperand{ToTuple(std::move(operand))};
    case Wanted::kSet:
      return ToSet(std::move(operand));
    case Wanted::kValue:
    case Wanted::kNumber:
    case Wanted::kCondition:
      return ToValue(std::move(operand));
  }
  return operand;
}

MemberPtr ToMember(Operand operand) {
  if (const auto* hierarchy = std::get_if<HierarchyOperand>(&operand)) {
    return NewCurrentMember(hierarchy->hierarchy);
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

std::string Describe(Wanted wanted) {
  switch (wanted) {
    case Wanted::kHierarchy:
      return "a hierarchy";
    case Wanted::kLevel:
      return "a level";
    case Wanted::kMember:
      return "a member";
    case Wanted::kTuple:
      return "a tuple";
    case Wanted::kSet:
      return "a set";
    case Wanted::kValue:
      return "a value";
    case Wanted::kNumber:
      return "a number";
    case Wanted::kCondition:
      return "a condition";
    case Wanted::kFlag:
      return "a flag";
    case Wanted::kMissing:
      return "nothing";
  }
  return {};
}

}  // namespace vok::olap
