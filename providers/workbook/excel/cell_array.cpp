#include "providers/workbook/excel/cell_array.h"

namespace vok::windows {

Variant CellArray(const CellBlock& block) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(block.rows), 1},
                             {static_cast<ULONG>(block.columns), 1}};
  Variant array;
  array.Get()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array.Get()->parray == nullptr) throw std::bad_alloc();
  array.Get()->vt = VT_ARRAY | VT_VARIANT;
  const ArrayAccess<VARIANT> elements(array.Get()->parray);
  for (std::size_t column = 0; column < block.columns; ++column) {
    for (std::size_t row = 0; row < block.rows; ++row) {
      // The first dimension runs fastest.
      elements[column * block.rows + row] = Variant(block.At(row + 1, column + 1)).Detach();
    }
  }
  return array;
}

}  // namespace vok::windows
