// The runs of one call of the program, as a JSON text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/run_outcome.h"

namespace vok::cli {

/// Reads [{"dataSource", "periods", "output"}, …] and checks all of it, so that a bad document runs
/// nothing. Failures are those of json_entries.h, and 13 for an entry that is missing, an output
/// path that names no file, and a workbook that two runs have, in whichever spelling: one of the
/// two would be lost.
std::vector<RunRequest> ParseJobs(const Host& host, std::string_view json,
                                  const std::string& origin);

}  // namespace vok::cli
