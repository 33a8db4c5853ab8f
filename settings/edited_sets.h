// One stored setting as a window edits it. Names match as everywhere: without regard to case and to
// blanks around them. Failures pass to the caller, a NULL that is read as a text or date included;
// a quantity that is NULL is empty, since rows from before the quantity columns have none.
#pragma once

#include <optional>
#include <string>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// With its `VarnelMDB` and, where their row is there, its money sets; nothing for an unknown name.
/// Adds the quantity columns to a file that lacks them.
std::optional<DataSourceSetting> ReadEditedDataSource(const Host& host,
                                                      const Environment& environment,
                                                      const std::string& name);

std::optional<PeriodSet> ReadEditedPeriods(const Host& host, const Environment& environment,
                                           const std::string& name);

}  // namespace vok
