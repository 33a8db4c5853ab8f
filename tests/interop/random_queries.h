// Random queries of the form that the system itself sends, made by its own query builder.
#pragma once

#include <string>

#include "tests/support/reference_olap/random_cube.h"

namespace vok::interop {

/// A query on one of the cubes of sample.xml.
std::string RandomQuery(plain::Dice& dice);

}  // namespace vok::interop
