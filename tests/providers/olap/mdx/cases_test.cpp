// Every case of the case files, on the small cube.
#include <gtest/gtest.h>

#include <memory>

#include "platform/failure.h"
#include "providers/olap/mdx/engine.h"
#include "providers/posix/icu_locale.h"
#include "tests/providers/olap/mdx/case_file.h"
#include "tests/providers/olap/mdx/small_cube.h"

namespace vok::test {
namespace {

std::shared_ptr<const olap::CubeView> Cube() {
  static const IcuLocale locale("en_US");
  static const BuiltCube built(SmallCube());
  return std::make_shared<const olap::CubeView>(
      std::shared_ptr<const olap::StoredCube>(built.shared_file(), &built.cube()), locale);
}

std::string Answer(const MdxCase& test) {
  const bool formatted = test.expected.find("formatted\n") != std::string::npos;
  try {
    return Shown(*olap::RunMdx(Cube(), test.query), formatted);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kSyntax);
    return "failure\n" + failure.description() + "\n";
  }
}

class MdxCases : public testing::TestWithParam<MdxCase> {};

TEST_P(MdxCases, AnswersAsTheFileSays) {
  EXPECT_EQ(Answer(GetParam()), GetParam().expected) << GetParam().query;
}

INSTANTIATE_TEST_SUITE_P(Files, MdxCases, testing::ValuesIn(ReadCases(VOK_MDX_CASES)),
                         [](const auto& tested) {
                           return tested.param.file + "_" + tested.param.name;
                         });

}  // namespace
}  // namespace vok::test
