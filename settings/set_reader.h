// One stored setting by its name, for a query run and for the window that edits it. Names are
// matched without regard to case and to blanks around them; the wildcards "*", "?", "#" and "[" of
// the database match by pattern.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// For a run: this and the two after it catch every failure, report it and return its number.
///
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

/// For a window: failures pass to the caller, a NULL that is read as a text or date included; a
/// quantity that is NULL is empty, since rows from before the quantity columns have none.
///
/// With its `VarnelMDB` and, where their row is there, its money sets; nothing for an unknown name.
/// Adds the quantity columns to a file that lacks them.
std::optional<DataSourceSetting> ReadEditedDataSource(const Host& host,
                                                      const Environment& environment,
                                                      const std::string& name);

std::optional<PeriodSet> ReadEditedPeriods(const Host& host, const Environment& environment,
                                           const std::string& name);

}  // namespace vok
