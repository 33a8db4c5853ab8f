// Rows as database servers write them: "\n" after each, tabs between fields, "\N" for NULL, a
// backslash before letters that stand for such, as in C.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vok {

struct Field {
  std::string_view text;
  bool is_null = false;
};

/// Whole rows, read one after the other. `place` begins failure texts; rows are counted from
/// `first_row`.
class RowText {
 public:
  RowText(std::string text, std::size_t width, std::string place, uint64_t first_row);
  RowText(const RowText&) = delete;  // fields are views into the text
  RowText& operator=(const RowText&) = delete;

  /// False after the last row. Failure -2147467259 for a row of another width, and for one that is
  /// not UTF-8.
  bool Next();
  /// The current row. Valid until the next call of `Next`.
  std::span<const Field> Fields() const { return fields_; }
  uint64_t row() const { return row_; }
  /// "PLACE, row 7".
  std::string PlaceOf(uint64_t row) const { return place_ + ", row " + std::to_string(row); }

 private:
  void TakeField(char last, Field& field);
  [[noreturn]] void Fail(const std::string& what) const;

  std::string text_;
  std::string place_;
  uint64_t row_;
  char* at_;
  char* end_;
  bool is_utf8_;
  std::vector<Field> fields_;
};

}  // namespace vok
