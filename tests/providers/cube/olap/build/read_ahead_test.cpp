#include "providers/cube/olap/build/read_ahead.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "native.h"
#include "platform/failure.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

/// All rows, their places and how the table ends.
std::string Log(TableReader& reader) {
  std::string log;
  try {
    while (reader.Next()) {
      log += reader.Place();
      for (const Field& field : reader.Fields()) {
        log += field.is_null ? "|null" : "|" + std::string(field.text);
      }
      log += '\n';
    }
    log += "end";
  } catch (const Failure& failure) {
    log += failure.description();
  }
  return log;
}

/// Rows over one line or two; of the last one's fields the second is missing when it is bad.
void WriteTable(const std::string& path, int rows, bool is_bad) {
  std::ofstream table(path, std::ios::binary);
  table << "a,b,c\n";
  for (int row = 1; row <= rows; ++row) {
    table << row << (row % 7 == 0 ? ",\"say \"\"x\"\"\n\"," : ",,") << "c\n";
  }
  if (is_bad) table << "1,c\n";
}

TEST(ReadAhead, GivesTheSameRowsAndTheSameFailure) {
  const test::TemporaryFolder folder;
  const test::NativeFiles files;
  for (const int rows : {0, 1, 2047, 2048, 2049, 4096, 30000}) {
    for (const bool is_bad : {false, true}) {
      WriteTable(folder.File("t.csv"), rows, is_bad);
      const auto source = OpenCsvFolder(files, folder.path());
      const std::string expected = Log(*source->Open("t", {"c", "a", "b"}));
      EXPECT_TRUE(Log(*ReadAhead(source->Open("t", {"c", "a", "b"}))) == expected)
          << rows << " " << is_bad;
      const auto left = ReadAhead(source->Open("t", {"a"}));  // while it waits for its reader
      if (rows > 0) {
        EXPECT_TRUE(left->Next());
      }
      EXPECT_EQ(expected.ends_with("end"), !is_bad);
    }
  }
}

}  // namespace
}  // namespace vok::olap
