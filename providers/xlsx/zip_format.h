// The container of a workbook file: records, their sizes, and the limits of what is believed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vok::xlsx::zip {

inline constexpr uint32_t kLocalSignature = 0x04034b50;
inline constexpr uint32_t kCentralSignature = 0x02014b50;
inline constexpr uint32_t kEndSignature = 0x06054b50;
inline constexpr std::size_t kLocalSize = 30;
inline constexpr std::size_t kCentralSize = 46;
inline constexpr std::size_t kEndSize = 22;
inline constexpr std::size_t kMaxComment = 0xFFFF;

inline constexpr uint16_t kStored = 0;
inline constexpr uint16_t kDeflated = 8;
inline constexpr uint16_t kEncrypted = 1;  // flag bit

inline constexpr std::size_t kMaxEntries = 4096;
/// Of one part, expanded; and of all parts together.
inline constexpr uint64_t kMaxExpanded = uint64_t{2} << 30;
/// A part that is larger than the first and expands by more than the second is taken for a trap.
inline constexpr uint64_t kTrustedExpanded = uint64_t{64} << 20;
inline constexpr uint64_t kMaxRatio = 200;

inline bool IsBelievable(uint64_t packed, uint64_t expanded) {
  return expanded <= kTrustedExpanded || expanded / kMaxRatio <= packed;
}

}  // namespace vok::xlsx::zip
