// The system's query on the sample ledger, every cell added up again from the CSV text.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "providers/olap/mdx/engine.h"
#include "providers/posix/icu_locale.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::test {
namespace {

constexpr int kLines = 6;

struct Fact {
  int month, line, account, opening;
  long long cents;
  std::optional<int> units;
};

std::vector<Fact> FactsOf(const CubeTexts& texts) {
  std::vector<Fact> facts;
  std::istringstream table(texts.tables.at("fact"));
  std::string row;
  std::getline(table, row);
  while (std::getline(table, row)) {
    std::vector<std::string> fields;
    std::istringstream cells(row);
    for (std::string field; std::getline(cells, field, ',');) fields.push_back(field);
    fields.resize(8);
    std::string cents = fields[6];
    cents.erase(cents.find('.'), 1);
    std::optional<int> units;
    if (!fields[7].empty()) units = std::stoi(fields[7]);
    facts.push_back({std::stoi(fields[1]), std::stoi(fields[2]), std::stoi(fields[3]),
                     std::stoi(fields[4]), std::stoll(cents), units});
  }
  return facts;
}

std::string MonthName(int month) {
  return "[Date].[" + std::to_string(2009 + month / 12) + "].[" +
         std::to_string(month % 12 / 3 + 1) + "].[" + std::to_string(month % 12 + 1) + "]";
}

/// Two members per period: n months that end with the n-th third, fourth... month.
std::string SystemQuery(const std::vector<std::pair<int, int>>& periods, int ledger, int opening) {
  std::string with = "WITH ";
  std::string columns;
  for (std::size_t k = 0; k < periods.size(); ++k) {
    const std::string set = "LastPeriods(" + std::to_string(periods[k].first) + "," +
                            MonthName(periods[k].second) + ")";
    const std::string number = std::to_string(k);
    with += "MEMBER [DATE].[Q" + number + "] AS 'SUM(" + set + ",[Measures].[Units]) '\r\n";
    with += "MEMBER [DATE].[m" + number + "] AS 'SUM(" + set + ",[Measures].[Amount]) '\r\n";
    columns += (k > 0 ? "," : "") + ("[DATE].[Q" + number) + "],[DATE].[m" + number + "]";
  }
  return with + "SELECT {" + columns + "} ON COLUMNS, {[QeL].[QeL].Members} ON ROWS FROM [QEL] " +
         "WHERE ([ActX].[xlFile].[All].[Ledger" + std::to_string(ledger) +
         "],[Opening_Balance].[All].[" + std::to_string(opening) + "])";
}

TEST(SystemQuery, AgreesWithPlainLoops) {
  const CubeTexts texts = SampleLedger();
  const BuiltCube built(texts);
  const IcuLocale locale("en_US");
  const auto cube = std::make_shared<const olap::CubeView>(
      std::shared_ptr<const olap::StoredCube>(built.shared_file(), &built.cube()), locale);
  const std::vector<Fact> facts = FactsOf(texts);
  const std::vector<std::pair<int, int>> periods = {{1, 0},   {3, 2},  {6, 8},
                                                    {12, 11}, {5, 14}, {99, 17}};
  for (const int ledger : {1, 2}) {
    for (const int opening : {0, 1}) {
      const auto answer = olap::RunMdx(cube, SystemQuery(periods, ledger, opening));
      ASSERT_EQ(answer->CellCount(), kLines * periods.size() * 2);
      for (int line = 1; line <= kLines; ++line) {
        for (std::size_t k = 0; k < periods.size(); ++k) {
          std::optional<long long> cents, units;
          for (const Fact& fact : facts) {
            if (fact.line != line || (fact.account - 1) / 3 + 1 != ledger ||
                fact.opening != opening || fact.month > periods[k].second ||
                fact.month <= periods[k].second - periods[k].first) {
              continue;
            }
            cents = cents.value_or(0) + fact.cents;
            if (fact.units) units = units.value_or(0) + *fact.units;
          }
          const std::size_t at = (static_cast<std::size_t>(line) - 1) * periods.size() * 2 + 2 * k;
          const Value expected_units = units ? Value(static_cast<double>(*units)) : Value();
          const Value expected_amount =
              cents ? Value(static_cast<double>(*cents) / 100.0) : Value();
          EXPECT_EQ(answer->Cell(at), expected_units) << line << " " << k;
          EXPECT_EQ(answer->Cell(at + 1), expected_amount) << line << " " << k;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vok::test
