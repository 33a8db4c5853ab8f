// CSV as RFC 4180 has it: commas or another separator, quotes doubled within quotes, CR LF or LF, a
// header row. UTF-8, with or without a mark at the beginning. An empty field is NULL, an empty text
// is written "".
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "providers/cube/olap/build/row_blocks.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {

/// Cuts a text into rows of fields. Failures name the file, the line and what is wrong with it.
class CsvScanner {
 public:
  /// All that a file has, or a block of it. Text and path outlive the scanner. The separator is a
  /// letter of ASCII.
  CsvScanner(std::string_view text, const std::string& path, char separator = ',');
  CsvScanner(const RowBlock& block, const std::string& path, char separator = ',');

  /// Replaces `fields` by the next row's, which are valid until the next call; false at the end.
  bool NextRow(std::vector<Field>& fields);

  /// "/data/orders.csv, line 12".
  std::string PlaceOf(uint64_t line) const { return path_ + ", line " + std::to_string(line); }
  uint64_t line() const { return line_; }
  /// Where the next row begins.
  std::size_t position() const { return at_; }
  uint64_t next_line() const { return next_line_; }
  /// The failure at the current line.
  Failure Bad(const std::string& what) const;

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  /// Into a field that is empty.
  void ReadField(Field& field);
  void ReadQuotedField(Field& field);
  std::string_view Unquoted(std::string_view field);
  bool EndsField(char letter) const;
  bool TakeSeparator();
  void TakeLineEnd();
  void CheckUtf8(std::string_view field) const;
  Failure TooLong() const;

  std::string_view text_;
  const std::string& path_;
  char separator_;
  bool is_cut_ = false;  // the last row goes on after the text
  std::size_t at_ = 0;
  uint64_t line_ = 0;
  uint64_t next_line_ = 1;
  std::vector<std::unique_ptr<std::string>> unquoted_;  // of the current row; kept for the next
  std::size_t unquoted_count_ = 0;
};

}  // namespace vok::olap
