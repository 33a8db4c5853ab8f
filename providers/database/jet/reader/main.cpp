// vokcubeq17-jet FILE TABLE…: what these tables of a Jet 4 database hold, as JSON on standard
// output.
//
//   {"tables": [{"name": …, "columns": [{"name", "type", "size"}…], "unread": [name…],
//                "rows": [[…]…]}…]}
//   {"failure": why the file cannot be read, and what to do}
//
// Tables that are not there are left out. The component runs this program because damaged files
// make the library crash, or never come back: here that ends a process that nobody needs.
#include <sys/resource.h>

#include <cstdlib>
#include <iostream>
#include <new>

#include "providers/database/jet/reader/jet_table.h"

namespace {

using vok::jet::Json;

constexpr rlim_t kMostSeconds = 10;        // of the processor
constexpr rlim_t kMostMemory = 1UL << 30;  // bytes

void Limit(int resource, rlim_t most) {
  const rlimit limit{most, most};
  ::setrlimit(static_cast<__rlimit_resource>(resource), &limit);
}

void SetLimits() {
  Limit(RLIMIT_CPU, kMostSeconds);
  Limit(RLIMIT_CORE, 0);
#ifndef __SANITIZE_ADDRESS__  // it reserves terabytes for its own use
  Limit(RLIMIT_AS, kMostMemory);
#endif
}

Json TableNamed(const vok::jet::JetFile& file, const std::string& name, unsigned long page) {
  vok::jet::JetTable table(file.handle(), name, page);
  return {{"name", name},
          {"columns", table.Columns()},
          {"unread", table.Unread()},
          {"rows", table.Rows()}};
}

Json Read(const std::string& path, const std::vector<std::string>& names) {
  const vok::jet::JetFile file(path);
  Json tables = Json::array();
  for (const std::string& name : names) {
    if (const auto page = file.FindTable(name)) tables.push_back(TableNamed(file, name, *page));
  }
  return {{"tables", std::move(tables)}};
}

Json Answer(const std::string& path, const std::vector<std::string>& names) {
  try {
    return Read(path, names);
  } catch (const std::bad_alloc&) {
    return {{"failure", "needs more than a gigabyte of memory to be read: it may be damaged."}};
  } catch (const std::exception& error) {
    return {{"failure", error.what()}};
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "Usage: vokcubeq17-jet FILE TABLE...\n";
    return 2;
  }
  ::clearenv();  // the library takes ways of debugging and character sets from it
  SetLimits();
  const Json answer = Answer(argv[1], {argv + 2, argv + argc});
  std::cout << answer.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
  std::quick_exit(answer.contains("failure") ? 1 : 0);  // the library keeps what it once took
}
