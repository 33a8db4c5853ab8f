// Rows of facts from standard input or a pipe, which can be read only once.
#pragma once

#include <istream>
#include <memory>
#include <string>

#include "platform/files.h"

namespace vok::cli {

/// Reads to the end and puts all aside on the disk of `beside`: a cube may need the rows twice, and
/// there may be more of them than memory holds. Failures are those of `Files::Scratch`, and 57
/// where `input`, which has the name, cannot be read to its end.
std::shared_ptr<const FileReader> ReadPiped(Files& files, std::istream& input,
                                            const std::string& name, const std::string& beside);

/// Whether the path is that of a pipe or a device.
bool IsPipe(const Files& files, const std::string& path);

}  // namespace vok::cli
