// The checksum of a container's parts, also of a part whose pieces were summed apart.
#pragma once

#include <cstdint>
#include <string_view>

namespace vok::xlsx {

/// CRC-32 of the bytes.
uint32_t Checksum(std::string_view bytes);

/// Of two runs of bytes together, from those of each; `size` is the second one's.
uint32_t JoinedChecksum(uint32_t first, uint32_t second, uint64_t size);

}  // namespace vok::xlsx
