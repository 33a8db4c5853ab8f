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
#include "platform/files.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {

/// Cuts a text into rows of fields, each of 16 MB at most where it is read from a file. Failures
/// name the file, the line and what is wrong with it; `FileChanged` for a file that is changed
/// meanwhile.
class CsvScanner {
 public:
  /// Both outlive the scanner.
  CsvScanner(std::string_view text, const std::string& path);
  /// The same; the file is read piece by piece.
  CsvScanner(const FileReader& file, const std::string& path);

  /// Replaces `fields` by the next row's, which are valid until the next call; false at the end.
  bool NextRow(std::vector<Field>& fields);

  /// "/data/orders.csv, line 12".
  std::string PlaceOf(uint64_t line) const { return path_ + ", line " + std::to_string(line); }
  uint64_t line() const { return line_; }
  uint64_t position() const { return window_begin_ + at_; }
  uint64_t size() const { return file_ == nullptr ? text_.size() : file_->Size(); }
  /// What is known of the text after the current row.
  std::string_view Ahead() const { return text_.substr(at_); }
  /// The failure at the current line.
  Failure Bad(const std::string& what) const;

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  bool SeesEnd() const { return file_ == nullptr || window_begin_ + text_.size() == file_->Size(); }
  void Widen();
  void ReadPiece();
  void SkipMark();
  bool ScanRow(std::vector<Field>& fields);
  Field NextField();
  Field QuotedField();
  std::string_view Unquoted(std::string_view field);
  bool TakeComma();
  void TakeLineEnd();
  void CheckUtf8(std::string_view field) const;

  const FileReader* file_ = nullptr;  // nullptr: the text is all there is
  std::string piece_;                 // of the file, from `window_begin_` on
  uint64_t window_begin_ = 0;
  std::string_view text_;  // whole lines, of the piece or of the text that was given
  const std::string& path_;
  std::size_t at_ = 0;
  bool is_cut_ = false;  // the row goes on after the window
  uint64_t line_ = 0;
  uint64_t next_line_ = 1;
  std::vector<std::unique_ptr<std::string>> unquoted_;  // of the current row; kept for the next
  std::size_t unquoted_count_ = 0;
};

}  // namespace vok::olap
