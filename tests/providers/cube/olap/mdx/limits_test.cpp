// Queries that would take too long or grow too large end, wherever the work is.
#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <functional>
#include <memory>
#include <regex>
#include <string>

#include "native.h"
#include "platform/failure.h"
#include "providers/cube/olap/mdx/engine.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failures.h"

namespace vok::test {
namespace {

/// The only cube of the file, as queries see it; it keeps the file open.
std::shared_ptr<const olap::CubeView> ViewOf(const BuiltCube& built) {
  static const NativeLocale locale("en_US");
  return std::make_shared<const olap::CubeView>(
      std::shared_ptr<const olap::StoredCube>(built.shared_file(), &built.cube()), locale);
}

/// Cube "QEL": Date (All, Year, Month; November 2009 to April 2010), QeL (All and the lines A, B,
/// C, D, "E]"), ActX with hierarchy xlFile (All, Ledger, File), Opening_Balance (All; 0 and 1),
/// Area (no All; Section, Item). Measures Amount (default) and Units. The facts are in its folder.
std::shared_ptr<const olap::CubeView> SmallCube() {
  static const BuiltCube built(SampleTexts("small"));
  return ViewOf(built);
}

/// Members m0 to m`times` that each make something of the one before, which stands for every "#".
std::string Chained(const std::string& first, const std::string& next, int times) {
  std::string with = "WITH MEMBER Measures.m0 AS " + first;
  const std::regex before("#");
  for (int i = 1; i <= times; ++i) {
    with += " MEMBER Measures.m" + std::to_string(i) + " AS " +
            std::regex_replace(next, before, "Measures.m" + std::to_string(i - 1));
  }
  return with;
}

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// The first cell, or the failure.
std::string AnswerTo(const std::string& query,
                     const std::shared_ptr<const olap::CubeView>& cube = SmallCube()) {
  olap::QueryLimits limits;
  limits.timeout_seconds = 120;  // of a machine that is busy
  std::string cell;
  const Failure failure = FailureOf([&] {
    const Value value = olap::RunMdx(cube, query, limits)->Cell(0);
    cell = value.IsEmpty() ? "-" : value.ToText();
  });
  return failure.number() == 0 ? cell : failure.description();
}

/// Does the work on a thread with as little stack as host programs give theirs.
void OnSmallStack(const std::function<void()>& work) {
#ifdef __SANITIZE_ADDRESS__
  constexpr std::size_t kStack = std::size_t{8} << 20;  // frames with red zones
#else
  constexpr std::size_t kStack = std::size_t{1} << 20;
#endif
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStack);
  pthread_t thread;
  const auto run = [](void* given) -> void* {
    (*static_cast<const std::function<void()>*>(given))();
    return nullptr;
  };
  auto* given = const_cast<std::function<void()>*>(&work);
  ASSERT_EQ(pthread_create(&thread, &attributes, run, given), 0);
  pthread_join(thread, nullptr);
}

const std::string kMany =
    "([Date].Members * [QeL].[QeL].Members * [ActX].[xlFile].Members * [Area].Members * "
    "[Opening_Balance].Members)";

/// Tenths that are added one by one make 0.30000000000000004.
TEST(ExactSums, AreRoundedOnceHoweverTheyAreWritten) {
  for (const std::string measure : {"Amount", "again"}) {
    EXPECT_EQ(
        AnswerTo("WITH MEMBER [Measures].[opening] AS ([Measures].[Amount], [Opening_Balance].[1]) "
                 "MEMBER [Measures].[again] AS ([Measures].[opening], [ActX].[xlFile].[All]) "
                 "MEMBER [Date].[x] AS Sum(LastPeriods(2, [Date].[2010].[1]), [Measures].[" +
                 measure + "]) SELECT [Date].[x] ON 0 FROM QEL WHERE [Area].[S2]"),
        "0.3")
        << measure;
  }
}

/// A member's cell is computed once for each place, however many formulas need it.
TEST(QueryLimits, FormulasThatNeedOneAnotherTwiceCostNoMore) {
  const std::string kOn = " SELECT Measures.m50 ON 0 FROM QEL WHERE [Date].[2010].[4]";
  const struct {
    std::string first;
    std::string next;
    std::string select;
    std::string cell;
  } cases[] = {
      {"1", "Sum({[QeL].[A], [QeL].[B]}, #) - Sum({[QeL].[A]}, #)", kOn, "1"},
      {"Measures.Units", "([Date].CurrentMember.PrevMember, #) + ([Date].CurrentMember.Lag(1), #)",
       kOn, "-"},
      {"1", "IIf(# > 0, #, 0) + #", " SELECT Measures.m50 ON 0, [QeL].Members ON 1 FROM QEL",
       "1125899906842624"},
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
      {Chained("1", long_sum, 5) + " SELECT Measures.m5 ON 0, QeL.Members ON 1 FROM QEL", "deep"},
      {"WITH MEMBER Measures.x AS " + Repeated("1 + ", 450) + "1 SELECT Measures.x ON 0 FROM QEL",
       "451"},
      {"SELECT [QeL].[A]" + Repeated(".Parent", 300000) + " ON 0 FROM QEL", "operations in a row"},
      {"WITH MEMBER Measures.x AS CASE" + Repeated(" WHEN 1 = 2 THEN 1", 100000) +
           " END SELECT Measures.x ON 0 FROM QEL",
       "operations in a row"},
      {"SELECT " + Repeated("Filter(QeL.Members, Count(", 45) + "QeL.Members" +
           Repeated(") > 0)", 45) + " ON 0 FROM QEL WHERE Measures.Units",
       "21"},
      {"SELECT [Measures].[Mixed] ON 0 FROM QEL",
       "calculated member [Measures].[Mixed], line 2, column 3: the text \"x\" is where a number"},
      {std::string(olap::kMaxMdxLength + 1, ' '), "the limit is"},
      {"SELECT " + Repeated("(", 200) + "1", "column 108: expressions nest more than 100 deep"},
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

TEST(QueryLimits, CountTheFormulasOfTheFileToo) {
  CubeTexts texts = SampleTexts("small");
  std::string chain, before = "[Measures].[Units]";
  for (const std::string name : {"a", "b", "c", "d", "e", "f", "g", "h", "i"}) {
    chain += "<CalculatedMember name=\"" + name + "\" dimension=\"Measures\"><Formula>" +
             Repeated("Sum({[QeL].[A]}, ", 45) + before + Repeated(")", 45) +
             "</Formula></CalculatedMember>";
    before = "[Measures].[" + name + "]";
  }
  texts.schema.insert(texts.schema.find("</Cube>"), chain);
  const BuiltCube built(texts);
  const std::string kOn = " ON 0 FROM QEL WHERE [QeL].[A]";
  OnSmallStack([&] {
    EXPECT_EQ(AnswerTo("SELECT Measures.i" + kOn, ViewOf(built)),
              AnswerTo("SELECT Measures.Units" + kOn));
    const std::string deeper =
        Chained("Measures.i", Repeated("-(", 90) + "#" + Repeated(")", 90), 8);
    EXPECT_NE(AnswerTo(deeper + " SELECT Measures.m8" + kOn, ViewOf(built)).find("deep"),
              std::string::npos);
  });
}

TEST(QueryLimits, EndAQueryInTimeWhereverItWorks) {
  for (const std::string& work :
       {"Count(Hierarchize(" + kMany + "))", "Count(Distinct(" + kMany + "))",
        "Sum(" + kMany + ", Measures.Amount * Measures.Units)"}) {
    const std::string many_times = "Count(Filter(" + kMany + ", Count(Filter(" + kMany + ", ";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(NumberOf([&] {
                olap::RunMdx(SmallCube(),
                             "WITH MEMBER Measures.x AS " + many_times + work +
                                 " < 0)) < 0)) SELECT Measures.x ON 0 FROM QEL",
                             {.timeout_seconds = 0.05});
              }),
              failure_number::kTimeout)
        << work;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5)) << work;
  }
}

TEST(QueryLimits, EndAQueryThatGrowsOrNeedsTooMuchMemory) {
  const olap::QueryLimits few{.max_cells = 20};
  const olap::QueryLimits small{.max_memory = std::size_t{1} << 20};
  const char* megabyte = "limit of 1 MB";
  const std::string many = "{" + Repeated(kMany + ", ", 12) + kMany + "}";
  const std::string months = "{" + Repeated("Date.Members, ", 699) + "Date.Members}";
  const std::string lines = "{" + Repeated("QeL.Members, ", 699) + "QeL.Members}";
  const olap::QueryLimits standard{.timeout_seconds = 20};  // so as not to hang without the limits
  const struct {
    const olap::QueryLimits& limits;
    std::string query;
    const char* words;
  } cases[] = {
      {few, "SELECT " + kMany + " ON 0 FROM QEL",
       "column 24: a cross join of 9 by 6 is past the limit"},
      {few, "SELECT {QeL.Members, QeL.Members, QeL.Members, QeL.Members} ON 0 FROM QEL",
       "column 8: the set has 24 tuples; the limit is 20"},
      {few, Chained("\"text\"", "# || #", 14) + " SELECT Measures.m14 ON 0 FROM QEL",
       "the text has 32768 bytes; the limit is 32767"},
      {standard, "SELECT " + months + " * " + lines + " ON 0 FROM QEL",
       "a cross join of 6300 by 4200 is past the limit"},
      {standard,
       "SELECT " + months + " ON 0, " + lines + " ON 1, [Opening_Balance].Members ON 2 FROM QEL",
       "the answer has more than 50000000 cells"},
      {small, "SELECT " + many + " ON 0 FROM QEL", megabyte},
      {small, "SELECT Head(Hierarchize(" + many + ")) ON 0 FROM QEL", megabyte},
      {small, "SELECT Head(Order(" + kMany + ", Measures.Amount, DESC)) ON 0 FROM QEL", megabyte},
      {small,
       Chained("\"text\"", "# || #", 12) +
           " SELECT QeL.Members * Date.Members ON 0 FROM QEL WHERE Measures.m12",
       megabyte},
      {small, "SELECT {" + Repeated("QeL.Members, ", 60000) + "QeL.Members} ON 0 FROM QEL",
       megabyte},
  };
  for (const auto& [limits, query, words] : cases) {
    const Failure failure =
        FailureOf([&, &text = query, &set = limits] { olap::RunMdx(SmallCube(), text, set); });
    EXPECT_EQ(failure.number(),
              words == megabyte ? failure_number::kOutOfMemory : failure_number::kSyntax);
    EXPECT_NE(failure.description().find(words), std::string::npos) << failure.description();
  }
}

TEST(QueryLimits, LetAnAnswerOfManyEmptyCellsThrough) {
  CubeTexts texts = SampleTexts("small");
  for (int i = 0; i < 10000; ++i) texts.tables["dim_line"] += "L" + std::to_string(i) + "\n";
  texts.tables["fact"] += "4,L9999,1,0,1,2.5,4\n";
  const BuiltCube built(texts);
  for (const std::string lines : {"[QeL].[QeL].Members", "[QeL].[QeL].[QeL].Members"}) {
    const auto answer = olap::RunMdx(ViewOf(built),
                                     "SELECT {Measures.Amount, Measures.Units} ON 0, "
                                     "[Date].Members ON 1, NON EMPTY " +
                                         lines + " ON 2 FROM QEL",
                                     {.max_memory = std::size_t{1} << 20});
    const std::size_t last = answer->PositionCount(2) - 1;
    EXPECT_EQ(answer->Member(2, last, 0).name, "L9999");
    EXPECT_EQ(answer->Cell(answer->CellCount() - 18).ToText(), "2.5") << lines;
    EXPECT_EQ(answer->Cell(answer->CellCount() - 36).ToText(), "50") << lines;
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
      {"SELECT FROM QEL WHERE {[QeL].[A], [QeL].[D]}", "[Date].[All], [QeL], "},
  };
  olap::RunMdx(ViewOf(built), "SELECT {[QeL].[A], [QeL].[B]} ON 0 FROM QEL");
  for (const auto& test : cases) {
    const Failure failure = FailureOf([&] { olap::RunMdx(ViewOf(built), test.query); });
    EXPECT_EQ(failure.number(), failure_number::kOverflow) << test.query;
    EXPECT_NE(failure.description().find(test.words), std::string::npos) << failure.description();
  }
}

}  // namespace
}  // namespace vok::test
