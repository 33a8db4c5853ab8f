#include <array>

#include "examples/tables.h"

namespace vok::examples {
namespace {

constexpr std::string_view kSchemaHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<Schema name="Ledger">
  <Cube name="LedgerQEL" defaultMeasure="Amount">
    <Table name="entries"/>
    <Dimension name="Date" type="TimeDimension" foreignKey="date_id">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="date_id">
        <Table name="dates"/>
        <Level name="Year" column="year" type="Integer" levelType="TimeYears" uniqueMembers="true"/>
        <Level name="Quarter" column="quarter" type="Integer" levelType="TimeQuarters"/>
        <Level name="Month" column="month" type="Integer" levelType="TimeMonths"/>
)";

constexpr std::string_view kDayLevel =
    R"(        <Level name="Day" column="day" type="Integer" levelType="TimeDays"/>
)";

constexpr std::string_view kSchemaTail = R"(      </Hierarchy>
    </Dimension>
    <Dimension name="QeL" type="TimeDimension" foreignKey="line_id">
      <Hierarchy name="QeL" hasAll="false" primaryKey="line_id">
        <Table name="lines"/>
        <Level name="Line" column="code" captionColumn="caption" ordinalColumn="sort" uniqueMembers="true"
          levelType="TimeUndefined"/>
      </Hierarchy>
    </Dimension>
    <Dimension name="ActX" foreignKey="file_id">
      <Hierarchy name="xlFile" hasAll="true" allMemberName="All" primaryKey="file_id">
        <Table name="files"/>
        <Level name="Ledger" column="ledger" uniqueMembers="true"/>
        <Level name="File" column="file" uniqueMembers="false"/>
      </Hierarchy>
    </Dimension>
    <Dimension name="Opening_Balance" foreignKey="opening_key">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="key">
        <Table name="opening"/>
        <Level name="Opening_Balance" column="key" captionColumn="meaning" type="Integer" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
    <Dimension name="MoneySet" foreignKey="money_id">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="money_id">
        <Table name="money"/>
        <Level name="MoneySet" column="code" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
    <Measure name="Amount" column="amount" aggregator="sum" formatString="#,##0.00"/>
    <Measure name="Units Quantity" column="units" aggregator="sum" formatString="#,##0"/>
)";

constexpr std::string_view kSchemaEnd = R"(  </Cube>
</Schema>
)";

constexpr std::string_view kAmount = "Amount", kUnits = "Units Quantity";

constexpr int kMoneySets = 13, kPeriods = 12;

struct Period {
  std::string_view name, from, until;
  bool opening_balance = false;
};

/// Months, a quarter, a year, periods that end or lie beyond the last entry and one before the
/// first; two bring their opening balance.
constexpr std::array<Period, kPeriods> kDemo = {{
    {"Jan 2024", "2024-01-01", "2024-01-31", true},
    {"Feb 2024", "2024-02-01", "2024-02-29"},
    {"Mar 2024", "2024-03-01", "2024-03-31"},
    {"Quarter 1 2024", "2024-01-01", "2024-03-31"},
    {"Nov 2024", "2024-11-01", "2024-11-30"},
    {"Dec 2024", "2024-12-01", "2024-12-31"},
    {"2021", "2021-01-01", "2021-12-31"},
    {"From October 2024", "2024-10-01", "2025-09-30"},
    {"2026", "2026-01-01", "2026-12-31"},
    {"Year 2023", "2023-01-01", "2023-12-31", true},
    {"ינואר 2022", "2022-01-01", "2022-01-01"},
    {"", "", ""},
}};

constexpr std::array<Period, kPeriods> kMonths2024 = {{
    {"Jan 2024", "2024-01-01", "2024-01-31"},
    {"Feb 2024", "2024-02-01", "2024-02-29"},
    {"Mar 2024", "2024-03-01", "2024-03-31"},
    {"Apr 2024", "2024-04-01", "2024-04-30"},
    {"May 2024", "2024-05-01", "2024-05-31"},
    {"Jun 2024", "2024-06-01", "2024-06-30"},
    {"Jul 2024", "2024-07-01", "2024-07-31"},
    {"Aug 2024", "2024-08-01", "2024-08-31"},
    {"Sep 2024", "2024-09-01", "2024-09-30"},
    {"Oct 2024", "2024-10-01", "2024-10-31"},
    {"Nov 2024", "2024-11-01", "2024-11-30"},
    {"Dec 2024", "2024-12-01", "2024-12-31"},
}};

/// A stored measure for the entries in one money alone: "Amount NIS".
void WriteMeasureOfMoney(OutputFile* file, std::string_view measure, std::string_view format,
                         const std::string& money) {
  *file << "    <CalculatedMember name=\"" << measure << " " << money
        << "\" dimension=\"Measures\" formatString=\"" << format << "\">\n"
        << "      <Formula>([Measures].[" << measure << "], [MoneySet].[All].[" << money
        << "])</Formula>\n    </CalculatedMember>\n";
}

void WriteSchema(const Plan& plan) {
  OutputFile schema(plan.output / "schema.xml");
  schema << kSchemaHead << (plan.days ? kDayLevel : "") << kSchemaTail;
  for (int money = 0; money < plan.money_sets; ++money) {
    WriteMeasureOfMoney(&schema, kAmount, "#,##0.00", MoneySetName(money));
    WriteMeasureOfMoney(&schema, kUnits, "#,##0", MoneySetName(money));
  }
  schema << kSchemaEnd;
  schema.Close();
}

/// The moneys in turn, each by its own measures; the last money set has all of them together. Every
/// sixth has no quantity: its column is there and stays blank.
void WriteMoneySet(OutputFile* file, const Plan& plan, int index) {
  const bool all = index == kMoneySets - 1, counted = index % 6 != 5;
  const std::string name = all ? "All" : MoneySetName(index % plan.money_sets);
  const std::string of_money = all ? "" : " " + name;
  *file << "    {\"MoneySet\": \"" << name << "\", \"Measure\": \"" << kAmount << of_money
        << "\", \"Qty\": \"" << (counted ? kUnits : "") << (counted ? of_money : "")
        << "\", \"IsCalculated\": " << (all ? "false}" : "true}") << (all ? "\n" : ",\n");
}

void WriteDataSource(OutputFile* file, const Plan& plan, int ledger) {
  *file << "  {\"SetName\": \"" << LedgerName(ledger) << "\", \"VarnelMDB\": \"host.mdb\", "
        << "\"CubeFile\": \"ledger.cub\", \"CubeName\": \"LedgerQEL\",\n   \"OBS\": \""
        << LedgerName(ledger) << "\", \"ActFile\": \"\", \"CountMoney\": " << kMoneySets
        << ", \"MoneySets\": [\n";
  for (int i = 0; i < kMoneySets; ++i) WriteMoneySet(file, plan, i);
  *file << "   ]}" << (ledger + 1 < plan.ledgers ? ",\n" : "\n");
}

void WritePeriodSet(OutputFile* file, std::string_view name,
                    const std::array<Period, kPeriods>& periods) {
  *file << "  {\"SetName\": \"" << name << "\", \"Periods\": [\n";
  for (const Period& period : periods) {
    *file << "    {\"PeriodName\": \"" << period.name << "\", \"FromDate\": \"" << period.from
          << "\", \"UntillDate\": \"" << period.until
          << "\", \"includeOpenBalans\": " << (period.opening_balance ? "true}" : "false}")
          << (&period != &periods.back() ? ",\n" : "\n");
  }
  *file << "   ]}";
}

}  // namespace

void WriteDocuments(const Plan& plan) {
  WriteSchema(plan);
  OutputFile settings(plan.output / "settings.json");
  settings << "{\n \"dataSources\": [\n";
  for (int ledger = 0; ledger < plan.ledgers; ++ledger) WriteDataSource(&settings, plan, ledger);
  settings << " ],\n \"periods\": [\n";
  WritePeriodSet(&settings, "Demo", kDemo);
  settings << ",\n";
  WritePeriodSet(&settings, "Months 2024", kMonths2024);
  settings << "\n ]\n}\n";
  settings.Close();
}

}  // namespace vok::examples
