// Everything that is stored, as records: for taking the settings elsewhere.
//
// NULLs are read as empty (a money set's own NULL stays). Failures pass to the caller.
#pragma once

#include <vector>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// All data-source settings with their `VarnelMDB` and money sets, in the order of their rows. One
/// without a row of money sets has none. Brings an older file up to date first.
std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, const Environment& environment);

std::vector<PeriodSet> ReadAllPeriodSets(const Host& host, const Environment& environment);

}  // namespace vok
