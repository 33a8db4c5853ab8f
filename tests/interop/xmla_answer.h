// Reads a server's SOAP answer to an MDX query.
#pragma once

#include <string>

#include "tests/interop/answer.h"

namespace vok::interop {

/// std::runtime_error for what is no answer: no XML, neither axes nor a fault.
Answer ReadXmlaAnswer(const std::string& xml);

}  // namespace vok::interop
