// Queries that would take too long or grow too large end, wherever the work is.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/failure.h"
#include "providers/cube/olap/mdx/engine.h"
#include "tests/providers/cube/olap/mdx/small_cube.h"

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

/// Members m0 to m`times` that each make something of the one before, which stands for every "#".
std::string Chained(const std::string& first, const std::string& next, int times) {
  std::string with = "WITH MEMBER Measures.m0 AS " + first;
  for (int i = 1; i <= times; ++i) {
    with += " MEMBER Measures.m" + std::to_string(i) + " AS ";
    for (const char letter : next) {
      if (letter == '#') {
        with += "Measures.m" + std::to_string(i - 1);
      } else {
        with += letter;
      }
    }
  }
  return with;
}

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// The first cell, or the failure.
std::string AnswerTo(const std::string& query) {
  olap::QueryLimits limits;
  limits.timeout_seconds = 120;  // of a machine that is busy
  try {
    const auto result = olap::RunMdx(SmallCube(), query, limits);
    const Value cell = result->Cell(0);
    return cell.IsEmpty() ? "-" : cell.ToText();
  } catch (const Failure& failure) {
    return failure.description();
  }
}

/// Does the work on a thread with as little stack as host programs give theirs.
void OnSmallStack(std::function<void()> work) {
#ifdef __SANITIZE_ADDRESS__
  constexpr std::size_t kStack = std::size_t{8} << 20;  // frames with red zones
#else
  constexpr std::size_t kStack = std::size_t{1} << 20;
#endif
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStack);
  pthread_t thread;
  const auto run = [](void* what) -> void* {
    (*static_cast<std::function<void()>*>(what))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

const std::string kMany =
    "([Date].Members * [QeL].[QeL].Members * [ActX].[xlFile].Members * [Area].Members * "
    "[Opening_Balance].Members)";

/// A member's cell is computed once for each place, however many formulas need it.
TEST(QueryLimits, FormulasThatNeedOneAnotherTwiceCostNoMore) {
  const std::string kOn = " SELECT Measures.m50 ON 0 FROM QEL WHERE [Date].[2010].[4]";
  const struct {
    std::string first;
    std::string next;
    std::string select;
    std::string cell;
  } cases[] = {
      {"Measures.Units", "# + #", kOn, "1125899906842624"},
      {"1", "Sum({[QeL].[A], [QeL].[B]}, #) - Sum({[QeL].[A]}, #)", kOn, "1"},
      {"Measures.Units", "([Date].CurrentMember.PrevMember, #) + ([Date].CurrentMember.Lag(1), #)",
       kOn, "-"},
      {"1", "IIf(# > 0, #, 0) + #", " SELECT Measures.m50 ON 0, [QeL].Members ON 1 FROM QEL",
       "1125899906842624"},
      {"1", "Aggregate({[Date].[2010].[3], [Date].[2010].[4]}, #)", kOn, "1125899906842624"},
      {"1", "Count(Filter([QeL].Members, # > 0)) - 5 * #",
       " SELECT Filter([QeL].Members, Measures.m50 = 1) ON 0 FROM QEL", "1169.75"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(AnswerTo(Chained(test.first, test.next, 50) + test.select), test.cell) << test.next;
  }
}

TEST(QueryLimits, EndAQueryThatNestsTooDeep) {
  const auto sums = [](int depth) {
    return Repeated("Sum({[QeL].[A]}, ", depth) + "#" + Repeated(")", depth);
  };
  const std::string long_sum = "#" + Repeated(" + 1", 450);
  const struct {
    std::string query;
    std::string words;
  } cases[] = {
      {Chained("1", sums(45), 25) + " SELECT Measures.m25 ON 0 FROM QEL", "deep"},
      {Chained("1", sums(5), 199) + " SELECT Measures.m199 ON 0, QeL.Members ON 1 FROM QEL",
       "deep"},
      {Chained("1", long_sum, 5) + " SELECT Measures.m5 ON 0, QeL.Members ON 1 FROM QEL", "deep"},
      {Chained("1", "IIf(# > 1, 1, Abs(Round(#)))", 800) + " SELECT Measures.m800 ON 0 FROM QEL",
       "deep"},
      {"WITH MEMBER Measures.x AS " + Repeated("1 + ", 450) + "1 SELECT Measures.x ON 0 FROM QEL",
       "451"},
      {"WITH MEMBER Measures.x AS Measures.x + 1 SELECT Measures.x ON 0, QeL.Members ON 1 FROM QEL",
       "[Measures].[x] cannot be computed"},
      {"SELECT [QeL].[A]" + Repeated(".Parent", 300000) + " ON 0 FROM QEL", "operations in a row"},
      {"SELECT Head([QeL].[A])" + Repeated(".Parent", 300000) + " ON 0 FROM QEL",
       "operations in a row"},
      {"WITH MEMBER Measures.x AS CASE" + Repeated(" WHEN 1 = 2 THEN 1", 100000) +
           " END SELECT Measures.x ON 0 FROM QEL",
       "operations in a row"},
      {"SELECT " + Repeated("Filter(QeL.Members, Count(", 45) + "QeL.Members" +
           Repeated(") > 0)", 45) + " ON 0 FROM QEL WHERE Measures.Units",
       "21"},
      {"SELECT " + Repeated("(", 99) + "[QeL].[A]" + Repeated(")", 99) + " ON 0 FROM QEL", "1"},
  };
  for (const auto& test : cases) {
    OnSmallStack([&] {
      EXPECT_NE(AnswerTo(test.query).find(test.words), std::string::npos)
          << test.query.substr(0, 200) << "\n"
          << AnswerTo(test.query);
    });
  }
}

TEST(QueryLimits, EndAQueryInTimeWhereverItWorks) {
  const std::string many_times = "Count(Filter(" + kMany + ", Count(Filter(" + kMany + ", ";
  const std::string queries[] = {
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
      {Chained("\"text\"", "# || #", 14) + " SELECT Measures.m14 ON 0 FROM QEL",
       "the text has 32768 bytes; the limit is 32767"},
  };
  for (const auto& test : cases) {
    EXPECT_NE(FailureOf(test.query, limits).description().find(test.words), std::string::npos)
        << FailureOf(test.query, limits).description();
  }
}

TEST(QueryLimits, EndAQueryThatNeedsTooMuchMemory) {
  olap::QueryLimits limits;
  limits.max_memory = std::size_t{1} << 20;
  const std::string many = "{" + Repeated(kMany + ", ", 12) + kMany + "}";
  const std::string text = Chained("\"text\"", "# || #", 12);
  const std::string queries[] = {
      "SELECT " + many + " ON 0 FROM QEL",
      "WITH SET a AS " + kMany +
          " SET b AS Distinct(a) SET c AS Distinct(b) SET d AS Distinct(c) "
          "SELECT Head(Union(Union(a, b), Union(c, d))) ON 0 FROM QEL",
      "SELECT Head(Hierarchize(" + many + ")) ON 0 FROM QEL",
      "SELECT Head(Order(" + kMany + ", Measures.Amount, DESC)) ON 0 FROM QEL",
      text + " SELECT QeL.Members * Date.Members ON 0 FROM QEL WHERE Measures.m12",
      "SELECT {" + Repeated("QeL.Members, ", 60000) + "QeL.Members} ON 0 FROM QEL"};
  for (const std::string& query : queries) {
    const Failure failure = FailureOf(query, limits);
    EXPECT_EQ(failure.number(), failure_number::kOutOfMemory) << query.substr(0, 200);
    EXPECT_NE(failure.description().find("limit of 1 MB"), std::string::npos);
  }
}

/// Facts that add up to more than any number are not a blank.
TEST(QueryLimits, EndAQueryWhoseSumsOverflow) {
  CubeTexts texts = SampleTexts("small");
  texts.tables["fact"] += "3,D,1,0,1,1e308,\n3,D,2,0,1,1e308,\n";
  const BuiltCube built(texts);
  const struct {
    std::string query;
    std::string words;
  } cases[] = {
      {"SELECT QeL.Members ON 0, {Measures.Units, Measures.Amount} ON 1 FROM QEL",
       "the facts at [Measures].[Amount], [Date].[All], [QeL].[All], [ActX].[xlFile].[All], "},
      {"SELECT {[QeL].[A], [QeL].[D]} ON 0 FROM QEL WHERE [Date].[2010].[1]",
       "[Date].[2010].[1], [QeL].[D], "},
      {"SELECT FROM QEL WHERE {[QeL].[A], [QeL].[D]}", "[Date].[All], [QeL], "},
      {"WITH MEMBER Measures.x AS Measures.Amount / 2 SELECT {[QeL].[D]} ON 0 FROM QEL "
       "WHERE Measures.x",
       "[QeL].[D], "},
  };
  olap::RunMdx(ViewOf(built), "SELECT {[QeL].[A], [QeL].[B]} ON 0 FROM QEL");
  for (const auto& test : cases) {
    try {
      olap::RunMdx(ViewOf(built), test.query);
      ADD_FAILURE() << test.query;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), failure_number::kOverflow);
      EXPECT_NE(failure.description().find(test.words), std::string::npos) << failure.description();
    }
  }
}

TEST(QueryLimits, EndAQueryThatWasCancelled) {
  QueryStop stop;
  stop.Ask();
  olap::QueryLimits limits;
  limits.stop = &stop;
  EXPECT_EQ(FailureOf("SELECT QeL.Members ON 0 FROM QEL", limits).number(), kQueryCancelled);
}

}  // namespace
}  // namespace vok::test
