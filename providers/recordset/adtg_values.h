// Values of fixed length in the rows of the binary form.
#pragma once

#include <cstdint>

#include "providers/recordset/byte_reader.h"
#include "providers/recordset/rowset.h"

namespace vok::recordset {

/// A type by its number in the form. `read` takes one value, and fails for bytes that do not hold
/// one.
struct FixedType {
  uint16_t type;
  FieldType field;
  Value (*read)(ByteReader&);
};

/// nullptr for a type that has another length in each value, or is not known.
const FixedType* FindFixedType(uint16_t type);

}  // namespace vok::recordset
