// Failure numbers that this provider alone gives.
#pragma once

#include <cstdint>

namespace vok::failure_number {

inline constexpr int32_t kNoColumn = -2147217904;         // DB_E_PARAMNOTOPTIONAL
inline constexpr int32_t kObjectExists = -2147217857;     // DB_E_TABLEEXISTS
inline constexpr int32_t kWrongColumnType = -2147217913;  // DB_E_DATATYPEMISMATCH

}  // namespace vok::failure_number
