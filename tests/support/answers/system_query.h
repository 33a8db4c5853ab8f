// Queries of the form that the system itself sends.
#pragma once

#include <string>

#include "tests/support/reference_olap/random_cube.h"

namespace vok::test {

/// Made by the system's own query builder, on a cube of tests/interop/sample.
std::string RandomSystemQuery(plain::Dice& dice);

}  // namespace vok::test
