// The bytes of a CSV file as UTF-8 text, unpacked, by the byte order mark that it begins with.
#pragma once

#include <memory>
#include <string>

#include "providers/cube/olap/build/row_blocks.h"

namespace vok::olap {

/// Unpacks gzip and turns UTF-16 with a byte order mark into UTF-8, both told by how the bytes
/// begin; passes all else on. Failures name `path`: a file that is damaged or cut short.
std::unique_ptr<ByteSource> Decoded(std::unique_ptr<ByteSource> source, const std::string& path);

}  // namespace vok::olap
