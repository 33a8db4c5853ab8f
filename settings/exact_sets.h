// Changing sets by their exact names, which may be any text: also one that the statements of a save
// would read as a pattern or could not hold. Case alone does not count, as in the tables' keys.
//
// Each is one change: all of it or nothing, as far as the database can. Failures pass to the
// caller.
#pragma once

#include <string>
#include <vector>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// Saves all of them, each in the place of the stored one of its name. No two of a kind have the
/// same name. Adds the quantity columns to a file that lacks them. A failure names the set.
void ImportSets(const Host& host, const Environment& environment,
                const std::vector<DataSourceSetting>& data_sources,
                const std::vector<PeriodSet>& period_sets);

/// `kind` as for `DeleteSet`. False when there is no such set.
bool DeleteExactSet(const Host& host, const Environment& environment, const std::string& name,
                    const std::string& kind);

/// Gives a set another name; all else that is stored under it stays. False when there is no such
/// set. Failures: 5 for a new name that `SetNameProblem` refuses, -2147217873 for one that is
/// taken.
bool RenameSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& new_name, const std::string& kind);

}  // namespace vok
