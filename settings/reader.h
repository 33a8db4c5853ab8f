// Loads the two named settings that a query run needs, and lists what is stored. Nothing here
// changes the database.
//
// The loading procedures catch every failure, report it and return its number; the listing ones let
// failures through. Names are matched without regard to case and to blanks around them; the
// wildcards "*", "?", "#" and "[" of the database match by pattern.
#pragma once

#include <cstdint>
#include <string>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// Loads both into the current settings. Returns 0 when both were found, else 9999 after one
/// message that names what was not. `cube_measures` are the current cube's measures: the first one
/// stands in for an empty `Measure` of money set 0.
int32_t LoadSettings(const Host& host, const Environment& environment, CurrentSettings& current,
                     const Value::Array& cube_measures, const std::string& data_source,
                     const std::string& periods);

/// 0; 9999 when the name is empty or nothing matches; the number of a failure. What was read before
/// a failure stays in the record.
int32_t ReadDataSourceSetting(const Host& host, const Environment& environment,
                              DataSourceSetting& setting, const Value::Array& cube_measures,
                              const std::string& name);

/// As above, but an empty name loads nothing and is not a failure. A stored NULL leaves the name of
/// its period as it was.
int32_t PeriodSettings(const Host& host, const Environment& environment, PeriodSet& set,
                       const std::string& name);

/// Names of all period sets; one empty value when there is none.
Value::Array ListPeriodSets(const Host& host, const Environment& environment);

/// All data-source settings, in parallel lists. A cube file that does not exist is "" and has an
/// empty date. One empty value in each list when there is none.
struct DataSourceList {
  Value::Array names;
  Value::Array cube_files;
  Value::Array file_dates;
};
DataSourceList ListDataSources(const Host& host, const Environment& environment);

/// The file's last modification, local time. Fails as the files port does.
Date GetFileDate(const Host& host, const std::string& path);

}  // namespace vok
