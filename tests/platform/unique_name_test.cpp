#include <gtest/gtest.h>

#include <utility>

#include "platform/cube.h"

namespace vok::cube_text {
namespace {

TEST(UniqueNames, EndWithTheName) {
  const std::pair<const char*, const char*> kCases[] = {
      {"[Date].[2010].[3]", "3"}, {"[QeL].[a]]b.[c]", "a]b.[c"},
      {"[Measures]", "Measures"}, {"[Date].&[17]", "else"},
      {"Plain", "else"},          {"", "else"},
      {"[Open", "else"},          {"[A].[]", ""},
      {"[A].[b] x", "else"}};
  for (const auto& [unique_name, name] : kCases) EXPECT_EQ(LastPart(unique_name, "else"), name);
}

}  // namespace
}  // namespace vok::cube_text
