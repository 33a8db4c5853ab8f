// What a settings database holds beside its sets, and so is not copied with them.
#pragma once

#include <string>
#include <vector>

#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// Sentences that say what is left out, and why: columns that settings do not have, money sets
/// without their data source, rows of the table that nothing reads, texts that are never written.
/// `data_sources` are all of the database that is open. Failures pass to the caller.
std::vector<std::string> LeftOut(const Host& host, Connection& connection,
                                 const std::vector<DataSourceSetting>& data_sources);

}  // namespace vok
