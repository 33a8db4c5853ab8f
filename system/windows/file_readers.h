// Who else can read a file.
#pragma once

#include <string>

namespace vok::windows {

/// What to do so that not every user of this computer can read the file; "" when they cannot, or
/// its rights are not told.
std::string AdviceOnReaders(const std::string& native_path);

}  // namespace vok::windows
