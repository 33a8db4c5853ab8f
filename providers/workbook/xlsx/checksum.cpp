#include "providers/workbook/xlsx/checksum.h"

#include <libdeflate.h>

namespace vok::xlsx {
namespace {

// Polynomials modulo the checksum's, the highest power in the lowest bit.
constexpr uint32_t kModulus = 0xEDB88320;
constexpr uint32_t kOne = 0x80000000;
constexpr uint32_t kEightBits = 0x00800000;  // x^8: what one more byte multiplies by

uint32_t Product(uint32_t a, uint32_t b) {
  uint32_t product = 0;
  for (uint32_t bit = kOne; bit != 0; bit >>= 1) {
    if ((a & bit) != 0) product ^= b;
    b = (b & 1) != 0 ? b >> 1 ^ kModulus : b >> 1;
  }
  return product;
}

}  // namespace

uint32_t Checksum(std::string_view bytes) {
  return libdeflate_crc32(0, bytes.data(), bytes.size());
}

uint32_t JoinedChecksum(uint32_t first, uint32_t second, uint64_t size) {
  uint32_t power = kOne;
  for (uint32_t square = kEightBits; size > 0; size >>= 1) {
    if ((size & 1) != 0) power = Product(square, power);
    square = Product(square, square);
  }
  return Product(power, first) ^ second;
}

}  // namespace vok::xlsx
