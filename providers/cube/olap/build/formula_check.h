// Whether a cube's calculated members can be computed.
#pragma once

#include "platform/locale.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

/// Looks into the formulas over the members of `cube`, which has everything but facts. Failure
/// -2147467259 for a bad one: the schema file and line, the member, the line and column within its
/// formula.
void CheckFormulas(const Locale& locale, const CubeSchema& schema, const NewCube& cube);

}  // namespace vok::olap
