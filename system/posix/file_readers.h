// Who else can read a file.
#pragma once

#include <string>

namespace vok {

/// What to do so that nobody but its owner can read the file; "" when nobody else can, or there is
/// no such file.
std::string AdviceOnReaders(const std::string& native_path);

}  // namespace vok
