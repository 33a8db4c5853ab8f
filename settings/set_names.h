// Which names settings can be saved under.
#pragma once

#include <string>

namespace vok {

/// Why no set should be called so, as the end of a sentence that begins with the set; "" when it
/// can. Saved sets are found by `like` and the trimmed name (see `NamedSetStatement`): a name with
/// a wildcard would touch every set that it matches, one with a quote spoils the statement, one
/// with blanks around it means the set without them.
std::string SetNameProblem(const std::string& name);

/// Failure 5 for a name with a problem; `words` are what the set is called, such as "period set".
void CheckSetName(const std::string& words, const std::string& name);

}  // namespace vok
