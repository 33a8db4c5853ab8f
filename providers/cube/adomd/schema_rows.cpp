#include "providers/cube/adomd/schema_rows.h"

#include "platform/failure.h"

namespace vok::windows {
namespace {

constexpr int32_t kAllRemainingRows = -1;

using Rows = std::vector<std::vector<std::string>>;

std::string Text(const VARIANT& cell) {
  const Value value = FromVariant(cell);
  return value.IsNull() ? std::string() : value.ToText();
}

/// From the array that holds, for each row, its columns one after the other.
Rows RowsIn(SAFEARRAY* array, std::size_t columns) {
  LONG first = 0, last = -1;
  if (SafeArrayGetDim(array) != 2 || FAILED(SafeArrayGetLBound(array, 2, &first)) ||
      FAILED(SafeArrayGetUBound(array, 2, &last)) || array->rgsabound[1].cElements != columns) {
    throw Failure(failure_number::kTypeMismatch,
                  "Type mismatch: the cube provider's schema rows have another shape than asked");
  }
  Rows rows(static_cast<std::size_t>(last - first + 1), std::vector<std::string>(columns));
  const ArrayAccess<VARIANT> cells(array);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      rows[row][column] = Text(cells[row * columns + column]);
    }
  }
  return rows;
}

Object OpenSchema(const Object& connection, int32_t schema, const Value::Array& restrictions) {
  if (restrictions.empty()) return connection.Child(L"OpenSchema", schema);
  return connection.Child(L"OpenSchema", schema, restrictions);
}

}  // namespace

Rows SchemaRows(const Object& connection, int32_t schema, const Value::Array& restrictions,
                const std::vector<std::string>& columns) {
  const Object records = OpenSchema(connection, schema, restrictions);
  Rows rows;
  if (!records.Read(L"EOF").ToBoolean()) {
    const Value::Array names(columns.begin(), columns.end());
    const Variant table = records.Call(L"GetRows", kAllRemainingRows, LeftOut(), names);
    if (table.Get()->vt == (VT_ARRAY | VT_VARIANT)) {
      rows = RowsIn(table.Get()->parray, columns.size());
    }
  }
  records.Call(L"Close");
  return rows;
}

}  // namespace vok::windows
