// Everything that is stored, as records: for taking the settings elsewhere.
//
// NULLs are read as empty (a money set's own NULL stays), as are the columns that a database of an
// older shape lacks. Nothing is written. Failures pass to the caller.
#pragma once

#include <vector>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// All data-source settings with their `VarnelMDB` and money sets, in the order of their rows. One
/// without a row of money sets has none.
std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, const Environment& environment);
/// Of the database that is open.
std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, Connection& connection);

std::vector<PeriodSet> ReadAllPeriodSets(const Host& host, const Environment& environment);
std::vector<PeriodSet> ReadAllPeriodSets(Connection& connection);

}  // namespace vok
