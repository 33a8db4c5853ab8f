// Every case of the case files, on the small cube.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/engine.h"
#include "tests/providers/cube/olap/mdx/case_file.h"
#include "tests/providers/cube/olap/mdx/small_cube.h"

namespace vok::test {
namespace {

std::string Answer(const std::shared_ptr<const olap::CubeView>& cube, const MdxCase& test) {
  const bool formatted = test.expected.find("formatted\n") != std::string::npos;
  try {
    return Shown(*olap::RunMdx(cube, test.query), formatted);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kSyntax);
    return "failure\n" + failure.description() + "\n";
  }
}

class MdxCases : public testing::TestWithParam<MdxCase> {};

TEST_P(MdxCases, AnswersAsTheFileSays) {
  EXPECT_EQ(Answer(SmallCube(), GetParam()), GetParam().expected) << GetParam().query;
}

TEST(MdxThreads, ShareOneOpenedCube) {
  const std::vector<MdxCase> cases = ReadCases(VOK_MDX_CASES);
  const auto cube = SmallCube();
  const auto answer_all = [&] {
    for (const MdxCase& test : cases) EXPECT_EQ(Answer(cube, test), test.expected) << test.name;
  };
  std::vector<std::thread> threads;
  for (int count = 0; count < 4; ++count) threads.emplace_back(answer_all);
  for (std::thread& thread : threads) thread.join();
}

INSTANTIATE_TEST_SUITE_P(Files, MdxCases, testing::ValuesIn(ReadCases(VOK_MDX_CASES)),
                         [](const auto& tested) {
                           return tested.param.file + "_" + tested.param.name;
                         });

}  // namespace
}  // namespace vok::test
