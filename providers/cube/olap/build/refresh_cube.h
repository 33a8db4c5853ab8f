// Reading the facts of some months anew into a cube file that was built from a database server.
#pragma once

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/build/refresh_months.h"

namespace vok::olap {

struct RefreshRequest {
  /// `output_path` is the file, and `data_path` the server's address where it is not the recorded
  /// one. Nothing of schemas and CSV is looked at.
  BuildRequest build;
  MonthChoice months;
  bool is_chosen = false;  ///< whether months were named; a live cube needs none
  MonthOf month_of;
  int64_t now = 0;  ///< seconds since 1970, to be recorded
};

/// Reads the tables of all dimensions, which is all for a live cube, and of the facts those of some
/// months; the others come from the file. A new file takes the old one's place at the end, whole or
/// not at all; it is the one that a whole build would make of the same tables, if only facts of
/// these months have changed. Failures: those of a build; the file does not tell where it is from;
/// facts that stay, but whose members are not known any more.
BuildReport RefreshCubeFile(Files& files, const Locale& locale, const RefreshRequest& request,
                            const std::function<void(const BuildStep&)>& progress);

}  // namespace vok::olap
