// A schema and its tables: they are refused, or become a cube file that opens and says as much.
//
// The input is the schema; then for each table a line "@name" and the lines of its CSV file.
#include <sstream>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "system/posix/icu_locale.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/memory_host.h"

namespace {

void Split(std::string_view input, vok::test::MemoryFiles& files) {
  std::string* file = &files.files["/schema.xml"];
  std::istringstream lines{std::string(input)};
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('@')) {
      file = &files.files["/data/" + line.substr(1) + ".csv"];
    } else {
      *file += line + (lines.eof() ? "" : "\n");
    }
  }
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  static const vok::IcuLocale locale("en_GB");
  vok::test::MemoryFiles files;
  files.folders = {"/data"};
  Split(bytes, files);
  vok::olap::BuildReport report;
  if (Refuses([&] {
        report = vok::olap::BuildCubeFile(files, locale, {"/schema.xml", "/data", "/made.cub"}, {});
      })) {
    if (!files.files["/made.cub"].empty()) std::abort();
    return;
  }
  const auto file = vok::olap::CubeFile::Open(files, "/made.cub");
  if (file->cubes().size() != report.cubes.size()) std::abort();
  for (std::size_t i = 0; i < report.cubes.size(); ++i) {
    if (file->cubes()[i].model.fact_count != report.cubes[i].facts) std::abort();
  }
}
