// The functions of the language: what each takes and what makes its expression. A family of
// functions is one file with one table; a new function is one row of it.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

#include "providers/cube/olap/mdx/operand.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// One use of a function; its arguments are converted to what the signature says.
struct Call {
  const CubeView& cube;
  const SourceText& source;
  std::size_t offset;  ///< of the function's name
  std::vector<Operand> arguments;

  bool Has(std::size_t index) const { return index < arguments.size(); }
  HierarchyId Hierarchy(std::size_t index) const {
    return std::get<HierarchyOperand>(arguments[index]).hierarchy;
  }
  LevelOperand Level(std::size_t index) const { return std::get<LevelOperand>(arguments[index]); }
  MemberPtr Member(std::size_t index) { return std::get<MemberPtr>(std::move(arguments[index])); }
  SetPtr Set(std::size_t index) { return std::get<SetPtr>(std::move(arguments[index])); }
  ValuePtr Value(std::size_t index) { return std::get<ValuePtr>(std::move(arguments[index])); }
  /// The value, or nullptr where the argument is left out.
  ValuePtr ValueOrNone(std::size_t index) { return Has(index) ? Value(index) : nullptr; }
  Place place() const { return {&source, offset}; }
  /// The place of `word` among the flags that the function knows; `otherwise` without one.
  /// Failure -2147217900: another flag.
  std::size_t Flag(std::size_t index, std::initializer_list<std::string_view> known,
                   std::size_t otherwise) const;
  /// The first hierarchy of the time dimension. Failure -2147217900: there is none.
  HierarchyId TimeHierarchy() const;
};

struct Function {
  std::string_view name;
  /// As in "[Date].Members"; the first argument stands before the point.
  bool is_property;
  /// One letter of `ArgumentType` per argument; those after "|" may be left out; a closing "*"
  /// repeats the last one.
  std::string_view signature;
  Operand (*make)(Call& call);
};

/// All functions, family by family. A name may occur several times, with other arguments.
const std::vector<Function>& Functions();
/// Whether some function has this name and form, without regard to case.
bool IsFunction(std::string_view name, bool as_property);
/// The function's expression. Failure -2147217900 with line and column: no function of this name
/// ("not supported"), or none that takes these arguments.
Operand CallFunction(std::string_view name, bool as_property, Call call);

/// Whether an argument of this one word is a flag.
bool IsFlag(std::string_view word);

std::span<const Function> MemberFunctions();
std::span<const Function> LevelFunctions();
std::span<const Function> SetFunctions();
std::span<const Function> OrderFunctions();
std::span<const Function> TimeFunctions();
std::span<const Function> AggregateFunctions();
std::span<const Function> LogicFunctions();
std::span<const Function> NumberFunctions();
std::span<const Function> NameFunctions();

}  // namespace vok::olap
