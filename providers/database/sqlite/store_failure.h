// The store's errors as the provider's failures.
#pragma once

#include <cstdint>
#include <string>

struct sqlite3;

namespace vok {

/// Throws the failure for the last error of `database` (nullptr: for `code` alone): what could not
/// be done, on which file, the system's own words, and what to do. `waited` is the time-out in
/// seconds.
[[noreturn]] void ThrowStoreFailure(sqlite3* database, int code, const std::string& file,
                                    int32_t waited);

/// Throws -2147467259: the file cannot be used, and why.
[[noreturn]] void ThrowUnusable(const std::string& file, const std::string& why);

}  // namespace vok
