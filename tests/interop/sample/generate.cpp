// Adds to the written tables of the sample what is made: every day of three years, facts, and
// random cubes with their schema and the statements that load their tables into the server's
// database.
//
//   interop_sample TABLES SCHEMA STATEMENTS COUNT [SEED]     COUNT, SEED: of the random cubes
//
// The sample is always the same. Months without facts stand at both ends, and amounts are quarters
// (exact in binary, so that no sum depends on its order). The written facts are placed by hand:
// such that cancel, a zero, unknown units, the opening balance only; the last two lines have none.
#include <array>
#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/reference_olap/random_cube.h"

namespace vok::interop {
namespace {

constexpr int kFacts = 6000;
constexpr int kRandomLines = 60;
constexpr std::array kUsedFiles = {0, 1, 2, 4, 5, 7};
constexpr std::array<std::string_view, 12> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

/// The keys of the days.
std::vector<int> WriteDates(std::ostream& out) {
  using namespace std::chrono;
  out << "date_id,year_no,quarter_no,month_no,day_no,month_name,quarter_name\n";
  std::vector<int> keys;
  for (sys_days date{2009y / January / 1}; date < sys_days{2012y / January / 1}; date += days{1}) {
    const year_month_day civil = date;
    const int year = static_cast<int>(civil.year());
    const int month = static_cast<int>(static_cast<unsigned>(civil.month()));
    const int day = static_cast<int>(static_cast<unsigned>(civil.day()));
    const int quarter = (month + 2) / 3;
    keys.push_back(year * 10000 + month * 100 + day);
    out << keys.back() << ',' << year << ',' << quarter << ',' << month << ',' << day << ",\""
        << kMonthNames[static_cast<std::size_t>(month - 1)] << "\",\"Q" << quarter << "\"\n";
  }
  return keys;
}

void WriteFacts(const std::vector<int>& days, std::ostream& out) {
  plain::Dice dice(20100401);
  out.precision(10);
  // January and February of the first year and the last two months stay without facts.
  const int used_days = static_cast<int>(days.size()) - 59 - 61;
  for (int i = 0; i < kFacts; ++i) {
    const int common = dice.Below(kRandomLines);  // the product makes high lines rare
    out << days[static_cast<std::size_t>(59 + dice.Below(used_days))];
    out << ',' << common * dice.Below(kRandomLines) / kRandomLines;
    out << ',' << dice.OneOf(kUsedFiles) << ',' << dice.OneIn(10);
    out << ',' << dice.Below(3);
    out << ',' << (dice.Below(80001) - 20000) / 4.0 << ',';
    if (!dice.OneIn(12)) out << dice.Below(41) - 5;
    out << '\n';
  }
}

std::string TypeOf(const std::string& column) {
  if (column.ends_with("_text")) return "VARCHAR";
  return column == "amount" ? "DOUBLE PRECISION" : "INT";
}

/// H2's CSVREAD reads every column as text.
std::string Loaded(const std::string& table, const std::string& csv) {
  std::istringstream names(csv.substr(0, csv.find('\n')));
  std::string columns;
  for (std::string name; std::getline(names, name, ',');) {
    columns += (columns.empty() ? "" : ", ") + ("CAST(\"" + name) + "\" AS " + TypeOf(name) +
               ") AS \"" + name + "\"";
  }
  return "CREATE TABLE \"" + table + "\" AS SELECT " + columns + " FROM CSVREAD('" + table +
         ".csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true');\n";
}

bool Write(const std::string& folder, std::ofstream schema, std::ofstream statements, int count,
           uint64_t seed) {
  std::ofstream dates(folder + "/dates.csv"), facts(folder + "/facts.csv", std::ios::app);
  WriteFacts(WriteDates(dates), facts);
  bool written = dates.flush() && facts.flush();
  schema << "<Schema name=\"random\">\n";
  for (int i = 0; i < count; ++i) {
    const plain::RandomCube random =
        plain::MakeRandomCube(seed + static_cast<uint64_t>(i), "Random" + std::to_string(i));
    schema << random.schema;
    for (const auto& [table, csv] : random.tables) {
      written &= !!(std::ofstream(folder + '/' + table + ".csv") << csv).flush();
      statements << Loaded(table, csv);
    }
  }
  schema << "</Schema>\n";
  return written && schema.flush() && statements.flush();
}

}  // namespace
}  // namespace vok::interop

int main(int argc, char** argv) {
  if (argc < 5) {
    std::cerr << "usage: interop_sample TABLES SCHEMA STATEMENTS COUNT [SEED]\n";
    return 2;
  }
  const uint64_t seed = argc > 5 ? std::stoull(argv[5]) : 1;
  return vok::interop::Write(argv[1], std::ofstream(argv[2]), std::ofstream(argv[3]),
                             std::stoi(argv[4]), seed)
             ? 0
             : 1;
}
