// Building a cube file from a schema and the tables that it names.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/locale.h"
#include "platform/table_server.h"
#include "providers/cube/olap/build/fact_loader.h"

namespace vok::olap {

struct BuildReport {
  struct Cube {
    std::string name;
    uint64_t facts = 0;            ///< rows read from the fact table
    uint64_t stored_cells = 0;     ///< after rows with equal keys were put together
    bool is_live = false;          ///< the facts stay in the database
    std::vector<int> months = {};  ///< that were read anew: years times 12, and 0 for January
  };
  std::vector<Cube> cubes;
  uint64_t file_bytes = 0;
  std::vector<std::string> bad_rows;  ///< what is wrong with each row of facts that was left out
  std::vector<std::string> remarks;   ///< what the user should know of the tables
};

/// What is being done, and which share of the whole it takes: from 0 to 1, as an estimate. Such as
/// "reading fact".
struct BuildStep {
  std::string what;
  double begin = 0;
  double end = 1;
  double done = 0;  ///< of this step, from 0 to 1; where nobody knows, 0
};

struct BuildRequest {
  std::string schema_path;  ///< XML
  /// A folder of CSV files, one per table, a SQLite database, or the address of a database server.
  std::string data_path;
  std::string output_path;
  /// Sees what was built before it takes its place; what it throws leaves all as it was.
  std::function<void(const BuildReport&)> check = {};
  unsigned threads = 0;  ///< that work on it, 0: as many as can run at once
  /// As `SetForm` takes them; what is empty is as the schema says.
  std::string separator = {}, decimal = {}, dates = {};
  /// The rows of the one cube's fact table, instead of those of `data_path`, and their name.
  std::shared_ptr<const FileReader> facts = {};
  std::string facts_name = {};
  bool leave_out_bad_rows = false;
  bool live = false;                 ///< the facts stay in the database server of `data_path`
  OpenTableServer open_server = {};  ///< for the address of one
  bool record_source = true;  ///< a database server's address, so that months can be read anew
  bool gathered = false;      ///< the server puts facts with equal keys together
  /// Bytes that facts may take in memory, about; beyond that they are sorted on the disk. 0: no
  /// limit.
  uint64_t memory = 0;
  std::string temporary_folder = {};  ///< where; "": that of the output
  const QueryStop* stop = nullptr;    ///< ends the build; outlives it
};

/// Writes all cubes of the schema into one file, whole or not at all. `progress` (may be empty) is
/// told each step as it begins, and how far it is where that is known. Failures name the file, the
/// line and the column, table, level or member, and what to do; `BadRows` those of several rows.
BuildReport BuildCubeFile(Files& files, const Locale& locale, const BuildRequest& request,
                          const std::function<void(const BuildStep&)>& progress);

}  // namespace vok::olap
