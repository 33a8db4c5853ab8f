// What the commands share that make a cube file: build and refresh.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "cli/command.h"
#include "providers/cube/olap/build/build_cube.h"

namespace vok::cli {

struct MakingOptions {
  olap::BuildRequest request;
  std::string bad_rows;
  uint64_t megabytes = 0;
  bool allow_empty = false;
  bool progress = false;
};

/// Those of both commands; `options` outlives the parse.
void AddMakingOptions(CLI::App& command, MakingOptions& options);

using MakeCube = std::function<olap::BuildReport(
    const olap::BuildRequest& request, const std::function<void(const olap::BuildStep&)>& tell)>;

/// Makes the file of the request, with Ctrl-C and progress, and tells what became of it. Failures
/// are those of `make`, and 58 for a file that must not be replaced.
void MakeCubeFile(Session& session, const MakingOptions& options, const MakeCube& make);

}  // namespace vok::cli
