// Records of settings as the fields of stored rows, in the order in which they are assigned.
#pragma once

#include "platform/database.h"
#include "settings/records.h"

namespace vok {

/// Dates that are not set are the zero date.
Fields PeriodFields(const PeriodSet& set);
/// Without the money sets; `AccFile` is always empty.
Fields InfoFields(const DataSourceSetting& setting);
/// An empty `Measure` is that of money set 0, a `MoneySet` that is not set NULL.
Fields MoneyFields(const DataSourceSetting& setting);

}  // namespace vok
