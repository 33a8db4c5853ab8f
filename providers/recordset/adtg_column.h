// A column of the binary form: its description, and its values in the rows.
#pragma once

#include <cstdint>
#include <optional>

#include "providers/recordset/byte_reader.h"
#include "providers/recordset/rowset.h"

namespace vok::recordset {

/// What the limit of 255 below which a text's length is one byte counts. The description of the
/// form leaves it open for texts of two bytes a character; files in use count bytes.
enum class LengthRule { kBytes, kCharacters };

class AdtgColumn {
 public:
  /// `part` holds one column descriptor, after its size.
  explicit AdtgColumn(ByteReader part);

  const Column& column() const { return column_; }
  /// From 1; the columns of a record set stand in this order.
  uint16_t ordinal() const { return ordinal_; }
  bool IsNullable() const { return (flags_ & 0x60) != 0; }
  /// Of the child set that the column belongs to; means nothing in the outermost set. Not every
  /// column tells it.
  std::optional<uint32_t> set_number() const { return set_number_; }
  /// True when the two rules read different bytes.
  bool DependsOnRule() const;
  Value Read(ByteReader& reader, LengthRule rule, const CodePage& code_page) const;
  /// In a row that has no bytes for it.
  Value Absent() const;

 private:
  bool IsChildSet() const;
  FieldType Type() const;
  std::size_t Length(ByteReader& reader, LengthRule rule) const;

  Column column_;
  uint16_t ordinal_ = 0;
  uint16_t type_ = 0;
  uint32_t max_length_ = 0;  ///< characters of a text, bytes of another value
  uint32_t flags_ = 0;
  std::optional<uint32_t> set_number_;
};

}  // namespace vok::recordset
