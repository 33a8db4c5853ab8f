// How the language is read, and what of it the document names.
#include "providers/cube/olap/mdx/parser.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/functions/registry.h"

namespace vok::olap {
namespace {

std::string Reading(const std::string& mdx) {
  try {
    const SourceText source(mdx);
    return ToText(Parse(source));
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kSyntax);
    return failure.description();
  }
}

TEST(MdxParser, ReadsWhatIsWrittenOrNamesThePlaceOfWhatIsWrong) {
  const struct {
    std::string mdx;
    std::string reading;
  } kCases[] = {
      {"select non empty{[a]]b]}on columns,\r\n-- x\n /* ] */ [c] ON 1 from q where(([d]))",
       "SELECT NON EMPTY {[a]]b]} ON 0, [c] ON 1 FROM q WHERE [d]"},
      {"SELECT [r] ON ROWS, [c] ON AXIS(0) FROM [Q]", "SELECT [c] ON 0, [r] ON 1 FROM [Q]"},
      {"SELECT a.[b].Members DIMENSION PROPERTIES [x].[y], z ON 0 FROM [Q] CELL PROPERTIES VALUE",
       "SELECT a.[b].Members ON 0 FROM [Q]"},
      {"SELECT a OR b AND NOT c = 1 // end",
       "MDX, line 1, column 35: expected \"ON\" but found the "
       "end of the text"},
      {"WITH MEMBER [M].[x] AS '[It''s] + ''q''''s''', SOLVE_ORDER = -1 SET [s] AS {} "
       "SELECT FROM [Q]",
       "WITH MEMBER [M].[x] AS ([It's] + \"q's\"), SOLVE_ORDER = (- 1) SET [s] AS {} SELECT FROM "
       "[Q]"},
      {"", "MDX, line 1, column 1: expected \"SELECT\" but found the end of the text"},
      {"SELECT\r\n{[a\xD7\xA9]} ON\n 0x",
       "MDX, line 3, column 3: expected \"FROM\" but found \"x\""},
      {"WITH MEMBER [M].[x] AS\n '1 +' SELECT FROM Q",
       "MDX, line 2, column 6: expected an expression but found the end of the text"},
      {"WITH MEMBER [M].[x] AS 'a", "MDX, line 1, column 24: the text has no end (')"},
      {"SELECT a ON AXIS(1.5) FROM Q",
       "MDX, line 1, column 18: expected an axis (COLUMNS, ROWS, PAGES, CHAPTERS, SECTIONS or a "
       "number) but found \"1.5\""},
      {"SELECT [a].&[1] ON 0 FROM Q", "MDX, line 1, column 12: not supported: member keys (\"&\")"},
      {"SELECT {[a].Members}.[x] ON 0 FROM Q",
       "MDX, line 1, column 22: only a name can be followed by [x], not an expression"},
      {"SELECT a ON 0 FROM (SELECT b ON 0 FROM Q)",
       "MDX, line 1, column 20: not supported: SELECT within FROM"},
      {"SELECT 1e999 ON 0 FROM Q", "MDX, line 1, column 8: the number 1e999 is too large"},
  };
  for (const auto& test : kCases) EXPECT_EQ(Reading(test.mdx), test.reading) << test.mdx;
}

TEST(MdxParser, HasLimits) {
  const std::string nested = "SELECT " + std::string(200, '(') + "1" + std::string(200, ')');
  EXPECT_EQ(Reading(nested), "MDX, line 1, column 108: expressions nest more than 100 deep");
  EXPECT_NE(Reading(std::string(kMaxMdxLength + 1, ' ')).find("the limit is"), std::string::npos);
}

/// The document lists the functions that there are, no more and no fewer.
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
