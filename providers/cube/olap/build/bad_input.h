// Failures about what a cube is built from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace vok::olap {

/// -2147467259: "WHERE: WHAT".
Failure BadInput(const std::string& where, const std::string& what);

/// "a, b, c", cut after the first twenty.
std::string Listed(const std::vector<std::string>& names);

/// In quotes, cut short when it is long.
std::string Quoted(std::string_view text);

}  // namespace vok::olap
