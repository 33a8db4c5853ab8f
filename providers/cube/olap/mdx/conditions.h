// Choices between values, and whether members are the same.
#pragma once

#include "providers/cube/olap/mdx/expression.h"

namespace vok::olap {

/// `yes` where the condition holds, else `no`; only the branch taken is computed.
ValuePtr NewChoice(ValuePtr condition, ValuePtr yes, ValuePtr no);
/// Whether both are the same member; `with` nullptr: whether there is no such member.
ValuePtr NewSameMember(MemberPtr member, MemberPtr with);

}  // namespace vok::olap
