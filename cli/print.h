// Values as the command line prints them, the same in every country.
#pragma once

#include <string>

#include "platform/date.h"

namespace vok::cli {

/// "2024-01-31", or "" for the zero date.
std::string IsoDate(Date date);
/// "2024-01-31T16:32:10".
std::string IsoDateTime(Date date);

}  // namespace vok::cli
