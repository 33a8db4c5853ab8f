// CSV as RFC 4180 has it: commas, quotes doubled within quotes, CR LF or LF, a header row. UTF-8,
// with or without a mark at the beginning. An empty field is NULL, an empty text is written "".
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "providers/olap/build/table_source.h"

namespace vok::olap {

/// Cuts a text into rows of fields. Failures name the file, the line and what is wrong with it.
class CsvScanner {
 public:
  /// Both outlive the scanner.
  CsvScanner(std::string_view text, const std::string& path);

  /// Replaces `fields` by the next row's, which are valid until the next call; false at the end.
  bool NextRow(std::vector<Field>& fields);

  /// "/data/orders.csv, line 12".
  std::string PlaceOf(uint64_t line) const { return path_ + ", line " + std::to_string(line); }
  uint64_t line() const { return line_; }
  std::size_t position() const { return at_; }
  std::size_t size() const { return text_.size(); }
  /// The failure at the current line.
  Failure Bad(const std::string& what) const;

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  Field NextField();
  Field QuotedField();
  std::string_view Unquoted(std::string_view field);
  bool TakeComma();
  void TakeLineEnd();
  void CheckUtf8(std::string_view field) const;

  std::string_view text_;
  const std::string& path_;
  std::size_t at_ = 0;
  uint64_t line_ = 0;
  uint64_t next_line_ = 1;
  std::vector<std::unique_ptr<std::string>> unquoted_;  // of the current row; kept for the next
  std::size_t unquoted_count_ = 0;
};

}  // namespace vok::olap
