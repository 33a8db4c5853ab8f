// A host with everything that a query run reaches: rows of settings, a cube, a spreadsheet.
#pragma once

#include <string>

#include "tests/support/cubes/watched_cube.h"
#include "tests/support/memory_host.h"
#include "tests/support/recording_spreadsheet.h"
#include "tests/support/table_database.h"

namespace vok::test {

/// The settings database stands in the component's folder and holds a data source "Sales" (all
/// money sets measure "Amount") and a period set "2010" without periods. The cube is the sample
/// ledger, which has opening balances.
struct ComponentHost {
  ComponentHost() {
    memory.files.files["component\\CubToQel.mdb"] = "";
    database.tables["DataSourceInfo"] = {
        {{"SetName", "Sales"}, {"CubeFile", "sales.cub"}, {"CubeName", "QEL"}, {"OBs", "Ledger1"}}};
    database.tables["MoneySetsMeasures"] = {{{"SetName", "Sales"}, {"Measure0", "Amount"}}};
    database.tables["Periods"] = {{{"SetName", "2010"}}};
  }

  TableRow& Money() { return database.tables["MoneySetsMeasures"][0]; }

  /// Sets period `number` to whole months of the year.
  void SetPeriod(int number, int from, int until, bool opening = false, int year = 2010) {
    TableRow& row = database.tables["Periods"][0];
    const std::string n = std::to_string(number);
    row["PeriodName" + n] = "P" + n;
    row["FromDate" + n] = Date::FromCivil(year, from, 1);
    row["UntillDate" + n] = Date::FromCivil(year, until + 1, 0);
    row["includeOpenBalans" + n] = opening;
  }

  /// Before the first run.
  void TakeOpeningBalancesAway() {
    cube.Change("\"Opening_Balance\" foreign", "\"Opening\" foreign");
  }

  MemoryHost memory;
  TableDatabase database;
  WatchedCube cube;
  RecordingSpreadsheet sheets;
  Host host = memory.On(database, cube, sheets);
};

}  // namespace vok::test
