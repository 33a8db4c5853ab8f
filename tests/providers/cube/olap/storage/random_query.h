// Slices of a stored cube that dice choose.
#pragma once

#include "providers/cube/olap/storage/cube_file.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::olap {

/// Of all measures; `grouped`: by the members of a level.
FactQuery RandomQuery(plain::Dice& dice, const CubeModel& model, bool grouped);

}  // namespace vok::olap
