// Queries that would take too long or grow too large end, wherever the work is.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/failure.h"
#include "providers/olap/mdx/engine.h"
#include "tests/providers/olap/mdx/small_cube.h"

namespace vok::test {
namespace {

Failure FailureOf(const std::string& query, const olap::QueryLimits& limits) {
  try {
    olap::RunMdx(SmallCube(), query, limits);
  } catch (const Failure& failure) {
    return failure;
  }
  return Failure(0, "none");
}

/// Members that each put the one before together with itself: 2^times readings of the first.
std::string Doubled(const std::string& first, const std::string& by, int times = 60) {
  std::string with = "WITH MEMBER Measures.m0 AS " + first;
  for (int i = 1; i <= times; ++i) {
    const std::string before = "Measures.m" + std::to_string(i - 1);
    with += " MEMBER Measures.m" + std::to_string(i) + " AS " + before + by + before;
  }
  return with;
}

const std::string kMany =
    "([Date].Members * [QeL].[QeL].Members * [ActX].[xlFile].Members * [Area].Members * "
    "[Opening_Balance].Members)";

TEST(QueryLimits, EndAQueryInTimeWhereverItWorks) {
  const std::string many_times = "Count(Filter(" + kMany + ", Count(Filter(" + kMany + ", ";
  const std::string queries[] = {
      Doubled("Measures.Amount", " + ") + " SELECT Measures.m60 ON 0 FROM QEL",
      Doubled("Measures.Amount", " + ") +
          " SELECT Filter(QeL.Members, Measures.m60 > 1) ON 0 FROM QEL",
      Doubled("Measures.Amount", " + ") + " SELECT Order(QeL.Members, Measures.m60) ON 0 FROM QEL",
      Doubled("Sum(Date.Members, Measures.Units)", " + ") +
          " SELECT QeL.Members ON 0 FROM QEL WHERE Measures.m60",
      "WITH MEMBER Measures.x AS " + many_times + "Count(Hierarchize(" + kMany +
          ")) < 0)) < 0)) SELECT Measures.x ON 0 FROM QEL",
      "WITH MEMBER Measures.x AS " + many_times + "Count(Distinct(" + kMany +
          ")) < 0)) < 0)) SELECT Measures.x ON 0 FROM QEL",
      "WITH MEMBER Measures.x AS " + many_times + "Sum(" + kMany +
          ", Measures.Amount * Measures.Units) < 0)) < 0)) SELECT Measures.x ON 0 FROM QEL"};
  for (const std::string& query : queries) {
    olap::QueryLimits limits;
    limits.timeout_seconds = 0.05;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(FailureOf(query, limits).number(), failure_number::kTimeout) << query;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5)) << query;
  }
}

TEST(QueryLimits, EndAQueryThatGrows) {
  olap::QueryLimits limits;
  limits.max_cells = 20;
  const struct {
    std::string query;
    std::string words;
  } cases[] = {
      {"SELECT " + kMany + " ON 0 FROM QEL", "column 24: a cross join of 9 by 6 is past the limit"},
      {"SELECT QeL.Members * Date.Members ON 0 FROM QEL", "past the limit of 20 tuples"},
      {"SELECT QeL.Members ON 0, Date.Members ON 1 FROM QEL", "more than 20 cells"},
      {"SELECT {QeL.Members, QeL.Members, QeL.Members, QeL.Members} ON 0 FROM QEL",
       "column 8: the set has 24 tuples; the limit is 20"},
      {"WITH SET a AS Union(Date.Members, Date.Members, ALL) SET b AS Union(a, a, ALL) "
       "SELECT b ON 0 FROM QEL",
       "column 63: the set has 36 tuples; the limit is 20"},
      {Doubled("\"text\"", " || ", 14) + " SELECT Measures.m14 ON 0 FROM QEL",
       "the text has 32768 bytes; the limit is 32767"},
  };
  for (const auto& test : cases) {
    EXPECT_NE(FailureOf(test.query, limits).description().find(test.words), std::string::npos)
        << FailureOf(test.query, limits).description();
  }
}

TEST(QueryLimits, EndAQueryThatWasCancelled) {
  const std::atomic<bool> cancelled = true;
  olap::QueryLimits limits;
  limits.cancelled = &cancelled;
  EXPECT_EQ(FailureOf("SELECT QeL.Members ON 0 FROM QEL", limits).number(), kQueryCancelled);
}

}  // namespace
}  // namespace vok::test
