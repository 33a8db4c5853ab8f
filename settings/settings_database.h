// Opening the settings database, what its statements share, and the names that sets may have.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "env/environment.h"
#include "platform/failure.h"
#include "platform/host.h"

namespace vok {

/// The settings database, open, with a time-out of 20 seconds.
std::unique_ptr<Connection> OpenSettings(const Host& host, const Environment& environment);
/// Another settings database, likewise.
std::unique_ptr<Connection> OpenDatabase(const Host& host, const std::string& path);

/// `statement` and the trimmed name in quotes. The name is put in as it stands: a `like` takes its
/// wildcards for such, and a quote in it spoils the statement, which then fails.
std::string NamedSetStatement(const std::string& statement, const std::string& name);

/// `statement` and the name in quotes, for an `=`. The name may be any text.
std::string ExactSetStatement(const std::string& statement, const std::string& name);

/// What the two kinds of sets are called in failures.
inline constexpr char kPeriodSetWords[] = "period set";
inline constexpr char kDataSourceWords[] = "data source";

/// Of the kind "Periods" (without regard to case); any other word means data sources.
const char* WordsForKind(const Locale& locale, const std::string& kind);
/// The tables that hold sets of that kind, in the order in which they are deleted from.
std::vector<const char*> TablesOfKind(const Locale& locale, const std::string& kind);

/// The failure, with the set that was being saved.
Failure WhileSaving(const Failure& failure, const std::string& words, const std::string& name);

/// Why no set should be called so, as the end of a sentence that begins with the set; "" when it
/// can. Saved sets are found by `like` and the trimmed name (see `NamedSetStatement`): a name with
/// a wildcard would touch every set that it matches, one with a quote spoils the statement, one
/// with blanks around it means the set without them.
std::string SetNameProblem(const std::string& name);

/// Failure 5 for a name with a problem; `words` are what the set is called, such as "period set".
void CheckSetName(const std::string& words, const std::string& name);

}  // namespace vok
