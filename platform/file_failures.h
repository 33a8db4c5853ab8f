// What the file systems of all operating systems say in the same words when something fails.
#pragma once

#include <cstdint>
#include <string>

namespace vok {

/// The failure of that number, "Cannot <what> "<path>"", the system's own words and, where there is
/// something to do about it, what; `advice` stands in for the usual one.
[[noreturn]] void ThrowFileFailure(int32_t number, const std::string& what, const std::string& path,
                                   const std::string& words, const std::string& advice = "");

/// 75: the path is that of a device or a pipe.
[[noreturn]] void ThrowNoOrdinaryFile(const std::string& what, const std::string& path);

/// 70: another run has claimed the path.
[[noreturn]] void ThrowClaimed(const std::string& path);

/// 5: a replacement that failed or is done is committed.
[[noreturn]] void ThrowNothingToCommit(const std::string& path);

/// 52 for a text that is not a path: the system would take one with a NUL for a shorter one.
void CheckPathText(const std::string& path);

}  // namespace vok
