// The names that may stand after DIMENSION PROPERTIES and CELL PROPERTIES.
#pragma once

#include "providers/cube/olap/mdx/name_resolver.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

/// Answers have the same properties for every question; names are looked into so that a mistyped
/// one is told. Failure -2147217900 with the place: not a property of members, or one of something
/// other than a hierarchy or a level.
void CheckMemberProperty(const NameResolver& names, const SourceText& source, const Name& name);
/// The same of cells.
void CheckCellProperty(const SourceText& source, const Name& name);

}  // namespace vok::olap
