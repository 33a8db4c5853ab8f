// A schema and its tables: they are refused, or become a cube file that opens and says as much.
//
// The input is the schema; then for each table a line "@name" and the lines of its CSV file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/failure.h"
#include "providers/olap/build/build_cube.h"
#include "providers/olap/storage/cube_file.h"
#include "providers/posix/icu_locale.h"
#include "tests/support/memory_host.h"

namespace {

void Split(const std::string& input, vok::test::MemoryFiles& files) {
  std::string path = "/schema.xml";
  for (std::size_t begin = 0; begin <= input.size();) {
    const std::size_t end = std::min(input.find("\n@", begin), input.size());
    std::string text = input.substr(begin, end - begin);
    if (begin > 0) {
      const std::size_t line = std::min(text.find('\n'), text.size());
      path = "/data/" + text.substr(0, line) + ".csv";
      text.erase(0, line + 1);
    }
    files.files[path] = text;
    begin = end + 2;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const vok::IcuLocale locale("en_GB");
  vok::test::MemoryFiles files;
  files.folders = {"/data"};
  Split(std::string(reinterpret_cast<const char*>(data), size), files);
  vok::olap::BuildReport report;
  try {
    report = vok::olap::BuildCubeFile(files, locale, {"/schema.xml", "/data", "/made.cub"}, {});
  } catch (const vok::Failure&) {
    if (!files.files["/made.cub"].empty()) std::abort();
    return 0;
  }
  const auto file = vok::olap::CubeFile::Open(files, "/made.cub");
  if (file->cubes().size() != report.cubes.size()) std::abort();
  for (std::size_t i = 0; i < report.cubes.size(); ++i) {
    if (file->cubes()[i].model.fact_count != report.cubes[i].facts) std::abort();
  }
  return 0;
}
