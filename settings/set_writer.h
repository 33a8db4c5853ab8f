// Saves and deletes named settings.
//
// A save replaces the whole stored row: the row of the name is deleted, then one is inserted. Where
// the database can group statements, a save that fails leaves what was stored. A name that would
// touch another set, or none, is refused before anything is sent (`SetNameProblem`). Failures pass
// to the caller; their text names the set.
#pragma once

#include <string>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// A set without a name is saved as "Periods". All fields are written, dates that are not set as
/// the zero date.
void SavePeriods(const Host& host, const Environment& environment, const PeriodSet& set);

/// The money sets of a data source. Adds the quantity columns to a file that lacks them. An empty
/// `Measure` is stored as that of money set 0, a `MoneySet` that is not set as NULL.
void SaveMoneyMeasures(const Host& host, const Environment& environment,
                       const DataSourceSetting& setting);

/// A data source without its money sets; `AccFile` is always stored empty.
void SaveDataSourceInfo(const Host& host, const Environment& environment,
                        const DataSourceSetting& setting);

/// Deletes the period set of this name when `kind` is "Periods" (without regard to case), else the
/// data source from all of its tables, one after the other: what was deleted before a failure stays
/// deleted.
void DeleteSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& kind);

}  // namespace vok
