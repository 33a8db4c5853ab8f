// The document lists the functions that there are, no more and no fewer.
#include "providers/cube/olap/mdx/functions/registry.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

namespace vok::olap {
namespace {

TEST(MdxFunctions, AreThoseOfTheDocument) {
  std::set<std::string> registered;
  for (const Function& function : Functions()) {
    registered.insert((function.is_property ? "." : "") + std::string(function.name));
  }
  std::set<std::string> documented;
  std::ifstream document(VOK_MDX_DOCUMENT);
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("| `")) continue;
    const std::size_t end = line.find('`', 3);
    documented.insert(line.substr(3, end - 3));
  }
  EXPECT_EQ(documented, registered);
}

}  // namespace
}  // namespace vok::olap
