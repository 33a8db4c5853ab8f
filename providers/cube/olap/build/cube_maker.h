// What building and refreshing a cube file have in common: cubes that are put into a new file.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/build/cube_record.h"
#include "providers/cube/olap/build/fact_loader.h"
#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

using TellStep = std::function<void(const BuildStep&)>;

/// What is to be recorded of a cube's origin; `record` still lacks what loading finds.
struct NewOrigin {
  CubeOrigin origin;
  CubeRecord record;
};

/// All that it is given outlives it.
class CubeMaker {
 public:
  /// Claims the output.
  CubeMaker(Files& files, const Locale& locale, const BuildRequest& request, const TellStep& tell);

  /// Progress of the next cube of `count`.
  Progress ProgressOf(std::size_t count) const;
  LoadOptions Options() const { return options_; }
  void Add(const CubeSchema& schema, const TableSource& source,
           std::vector<LoadedHierarchy> hierarchies, const LoadOptions& options,
           const Progress& progress, std::optional<NewOrigin> origin);
  /// A cube whose facts stay where they are.
  void AddLive(const CubeSchema& schema, TableServer& server,
               std::vector<LoadedHierarchy> hierarchies, const Progress& progress,
               std::optional<NewOrigin> origin);
  /// The file takes its place, unless `BuildRequest::check` is against it.
  BuildReport Finish(const TableSource& source);

  BuildReport& report() { return report_; }

 private:
  void TryFormulas(const CubeSchema& schema, const std::vector<LoadedHierarchy>& hierarchies) const;
  void AddOrigin(std::optional<NewOrigin> origin);

  const Locale& locale_;
  const BuildRequest& request_;
  const TellStep& tell_;
  LoadOptions options_;
  CubeWriter writer_;
  BuildReport report_;
};

/// Of all dimensions. `record`: keep the rows that they were made of.
std::vector<LoadedHierarchy> LoadHierarchies(const TableSource& source, const CubeSchema& schema,
                                             bool record, const Progress& progress);

/// `address` is that of a database server.
std::unique_ptr<TableServer> OpenServerOf(const BuildRequest& request, const std::string& address);

}  // namespace vok::olap
