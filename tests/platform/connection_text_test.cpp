#include "platform/connection_text.h"

#include <gtest/gtest.h>

#include "tests/support/failures.h"

namespace vok::cube_text {
namespace {

TEST(ConnectionText, IsReadInAnyOrderAndCase) {
  const struct {
    const char* text;
    const char* source;
    const char* catalog;
  } kCases[] = {
      {"DATA SOURCE=C:\\a b.cub;PROVIDER=MSOLAP;Initial Catalog=[My QEL];", "C:\\a b.cub",
       "My QEL"},
      {"Provider=MSOLAP;Data Source=x.cub;Initial Catalog=QEL;Client Cache Size=25;Auto Synch "
       "Period=10000",
       "x.cub", "QEL"},
      {" initial catalog = [] ; provider=msolap ; data source = \"a;b.cub\" ;", "a;b.cub", ""},
      {"Provider=MSOLAP;Data Source='it is.cub';Initial Catalog=[a]b]", "it is.cub", "a]b"},
  };
  for (const auto& row : kCases) {
    const ConnectionText parts = ParseConnectionText(row.text);
    EXPECT_EQ(parts.data_source, row.source);
    EXPECT_EQ(parts.initial_catalog, row.catalog);
    EXPECT_EQ(parts.provider.size(), 6u);
  }
  const ConnectionText limits = ParseConnectionText("Timeout=2.5;MAX CELLS=1000;Max memory=64");
  EXPECT_EQ(limits.timeout_seconds, 2.5);
  EXPECT_EQ(limits.max_cells, 1000u);
  EXPECT_EQ(limits.max_memory, 64u);
  for (const char* bad : {"Data Source=a;b.cub;Provider=MSOLAP", "Data Source='x.cub",
                          "Timeout=", "Data Source='x'y.cub", "Timeout=0", "Timeout=nan",
                          "Timeout=1s", "Max Cells=-1", "Max Cells=1.5", "Max Cells=1e99"}) {
    EXPECT_THROW(ParseConnectionText(bad), Failure) << bad;
  }
}

TEST(ConnectionText, IsShownWithoutPasswords) {
  for (const char* bad : {"Data Source=http://me:secret@h;b;c=d", "Data Source=http://me:se;cret@h",
                          "Data Source=http:///me:se cret@h/x;Timeout=0"}) {
    const std::string told = test::DescriptionOf([&] { ParseConnectionText(bad); });
    EXPECT_EQ(told.find("cret"), std::string::npos) << told;
    EXPECT_NE(told.find("is not understood"), std::string::npos) << bad;
  }
}

TEST(ConnectionText, TellsServersFromFiles) {
  const struct {
    const char* source;
    bool server;
  } kCases[] = {{"http://h/xmla", true},  {"HTTPS://h", true}, {"http:/h", false},
                {"/srv/http://h", false}, {"x.cub", false},    {"", false}};
  for (const auto& row : kCases) {
    ConnectionText parts;
    parts.data_source = row.source;
    EXPECT_EQ(NamesServer(parts), row.server) << row.source;
  }
}

}  // namespace
}  // namespace vok::cube_text
