// A host with everything that a query run reaches: rows of settings, a cube, a spreadsheet.
#pragma once

#include <string>

#include "tests/support/fake_cube.h"
#include "tests/support/memory_host.h"
#include "tests/support/recording_spreadsheet.h"
#include "tests/support/table_database.h"

namespace vok::test {

/// The settings database stands in the component's folder and holds a data source "Sales" (all
/// money sets measure "Amount") and a period set "2010" without periods. The cube has the months
/// January to April 2010 and the measures Amount and Units; it answers every query with no rows.
struct ComponentHost {
  ComponentHost() {
    memory.files.files["component\\CubToQel.mdb"] = "";
    database.tables["DataSourceInfo"] = {
        {{"SetName", "Sales"}, {"CubeFile", "sales.cub"}, {"CubeName", "QEL"}, {"OBs", "Ledger1"}}};
    database.tables["MoneySetsMeasures"] = {{{"SetName", "Sales"}, {"Measure0", "Amount"}}};
    database.tables["Periods"] = {{{"SetName", "2010"}}};
    FakeLevel months{"Month", {}};
    for (int month = 1; month <= 4; ++month) {
      const std::string name = std::to_string(month);
      months.members.push_back({name, 0, "[Date].[2010].[" + name + "]"});
    }
    cube.dimensions = {
        {"Measures", {{"MeasuresLevel", {{"Amount"}, {"Units"}}}}},
        {"Date",
         {{"All", {{"All"}}, true}, {"Year", {{"2010", 0}}}, {"Half", {{"H1", 0}}}, months}}};
    cube.answer = [](const std::string&) { return FakeAnswer{{{}, {}}, {}}; };
  }

  TableRow& Money() { return database.tables["MoneySetsMeasures"][0]; }

  /// Sets period `number` to whole months of 2010.
  void SetPeriod(int number, int from, int until, bool opening = false) {
    TableRow& row = database.tables["Periods"][0];
    const std::string n = std::to_string(number);
    row["PeriodName" + n] = "P" + n;
    row["FromDate" + n] = Date::FromCivil(2010, from, 1);
    row["UntillDate" + n] = Date::FromCivil(2010, until + 1, 0);
    row["includeOpenBalans" + n] = opening;
  }

  void AddOpeningBalance() {
    cube.dimensions.push_back(
        {"Opening_Balance", {{"All", {{"All"}}, true}, {"Key", {{"0", 0}, {"1", 0}}}}});
  }

  MemoryHost memory;
  TableDatabase database;
  FakeCube cube;
  FakeCubeProvider provider{cube};
  RecordingSpreadsheet sheets;
  Host host{memory.host.component, memory.files, memory.registry, memory.locale, memory.clock,
            memory.boxes,          database,     provider,        sheets};
};

}  // namespace vok::test
