// Paths of the operating system, written out.
#pragma once

#include <filesystem>
#include <string>

namespace vok {

/// A path in UTF-8, as the system has paths.
std::filesystem::path PathOfUtf8(const std::string& path);

/// A native path from its root on, without "." and "..", as it stays true when the current folder
/// is another one. Fails when the current folder is needed and gone.
std::string WholePath(const std::string& path);

}  // namespace vok
