// What is stored: the names for lists, and everything as records, for taking the settings
// elsewhere. Nothing is written. Failures pass to the caller.
#pragma once

#include <vector>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// Names of all period sets; one empty value when there is none.
Value::Array ListPeriodSets(const Host& host, const Environment& environment);

/// All data-source settings, in parallel lists. A cube file that does not exist, or cannot be
/// looked at, is "" and has an empty date. One empty value in each list when there is none.
struct DataSourceList {
  Value::Array names;
  Value::Array cube_files;
  Value::Array file_dates;
};
DataSourceList ListDataSources(const Host& host, const Environment& environment);

/// The file's last modification, local time. Fails as the files port does.
Date GetFileDate(const Host& host, const std::string& path);

/// All data-source settings with their `VarnelMDB` and money sets, in the order of their rows. One
/// without a row of money sets has none. NULLs are read as empty (a money set's own NULL stays), as
/// are the columns that a database of an older shape lacks.
std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, const Environment& environment);
/// Of the database that is open.
std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, Connection& connection);

std::vector<PeriodSet> ReadAllPeriodSets(const Host& host, const Environment& environment);
std::vector<PeriodSet> ReadAllPeriodSets(Connection& connection);

}  // namespace vok
