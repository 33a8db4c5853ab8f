// From the syntax of an expression to what it means.
#pragma once

#include <vector>

#include "providers/cube/olap/mdx/name_resolver.h"
#include "providers/cube/olap/mdx/operand.h"
#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

class ExpressionResolver {
 public:
  ExpressionResolver(const CubeView& cube, const SourceText& source, const NameResolver& names,
                     const QueryGuard& guard)
      : cube_(cube), source_(source), names_(names), guard_(guard) {}

  SetPtr ResolveSet(const Syntax& syntax) const;
  ValuePtr ResolveValue(const Syntax& syntax) const;
  /// The value, and the first measure that it names; `kNoMember` without one.
  ValuePtr ResolveFormula(const Syntax& syntax, MemberId& first_measure) const;

 private:
  Operand Resolve(const Syntax& syntax) const;
  Operand ResolveAs(const Syntax& syntax, ArgumentType wanted) const;
  Operand ResolveName(const Syntax& syntax) const;
  Operand ResolveBraces(const Syntax& syntax) const;
  Operand ResolveTuple(const Syntax& syntax) const;
  Operand ResolveCall(const Syntax& syntax) const;
  Operand ResolveUnary(const Syntax& syntax) const;
  Operand ResolveBinary(const Syntax& syntax) const;
  Operand ResolveRange(const Syntax& syntax) const;
  Operand ResolveArgument(const Syntax& syntax) const;
  Operand ResolveIs(const Syntax& syntax) const;
  Operand ResolveCase(const Syntax& syntax) const;
  ValuePtr ResolveWhen(const Syntax* operand, const Syntax& when) const;
  Operand CombineSets(const Syntax& syntax, Operand left, Operand right) const;
  Operand Same(Operand left, Operand right, const Syntax& syntax) const;
  void NoteMeasure(const Operand& operand) const;
  Place PlaceOf(const Syntax& syntax) const { return {&source_, syntax.offset}; }
  Operand Property(Operand base, const NamePart& part) const;
  Operand Checked(Operand operand, ArgumentType wanted, std::size_t offset) const;

  const CubeView& cube_;
  const SourceText& source_;
  const NameResolver& names_;
  const QueryGuard& guard_;
  mutable MemberId first_measure_ = kNoMember;
};

}  // namespace vok::olap
