#include "cube/connection.h"

#include <gmock/gmock.h>

#include "tests/support/fake_cube.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct ConnectionTest : ::testing::Test {
  FakeCube cube;
  FakeCubeServices services{cube};
  MemoryHost memory;
  Host host{memory.host.component, memory.files, memory.registry,
            memory.locale,         memory.clock, memory.boxes,
            memory.no_database,    services,     memory.no_spreadsheet};
  std::unique_ptr<CubeConnection> slot;
};

TEST_F(ConnectionTest, OpensWithTheRunTimeTextAndAClientCursor) {
  EXPECT_EQ(OpenConnection(host, slot, "C:\\a b\\sales.cub", "QEL"), 0);
  EXPECT_THAT(cube.connection_calls,
              ElementsAre("text DATA SOURCE=C:\\a b\\sales.cub;PROVIDER=MSOLAP;"
                          "Initial Catalog=[QEL];",
                          "cursor 3", "open '' '' '' -1"));
  EXPECT_NE(slot, nullptr);
}

TEST_F(ConnectionTest, FailureIsReportedAndItsNumberReturned) {
  cube.on_open = [] { throw Failure(failure_number::kUnspecified, "x.cub is damaged", "Cubes"); };
  EXPECT_EQ(OpenConnection(host, slot, "x.cub", "QEL"), failure_number::kUnspecified);
  ASSERT_EQ(memory.boxes.boxes.size(), 1u);
  EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("Function : OpenConnection\r\n"
                                                    "Module : ModeConnectFunctions"));
}

}  // namespace
}  // namespace vok::test
