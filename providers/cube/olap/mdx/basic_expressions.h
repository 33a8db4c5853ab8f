// The expressions that every query is made of: members, tuples, sets in braces, plain values.
#pragma once

#include <string>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// A member named in the query.
MemberPtr NewConstantMember(HierarchyId hierarchy, MemberId member);
/// The member of an expression that names one; `kNoMember` for any other expression.
MemberId ConstantMemberOf(const MemberExpression& expression);
/// The member that the hierarchy stands on. Failure -2147217900 at `place` where the slicer has it
/// stand on several.
MemberPtr NewCurrentMember(HierarchyId hierarchy, Place place);
/// A set of one tuple; of none when one of its members is missing.
SetPtr NewTupleSet(std::vector<MemberPtr> members);
/// {}: no tuples, over no hierarchies.
SetPtr NewEmptySet();
/// The sets one after another, all over these hierarchies or {}.
SetPtr NewJoinedSets(std::vector<HierarchyId> hierarchies, std::vector<SetPtr> sets, Place place);
/// The set that the query names.
SetPtr NewNamedSet(std::size_t index, const SetExpression& set);
/// All members from one to another of the same level; none when one is missing.
SetPtr NewRange(MemberPtr first, MemberPtr last, Place place);

/// The cell at the tuple; no members: the current cell.
ValuePtr NewCellValue(std::vector<MemberPtr> members);

}  // namespace vok::olap
