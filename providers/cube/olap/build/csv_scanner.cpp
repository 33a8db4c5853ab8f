#include "providers/cube/olap/build/csv_scanner.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/utf8.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

constexpr std::size_t kMostColumns = 10000;

/// Passes over letters of ASCII that come after the separator and the quote there: for a comma
/// digits, Latin letters, the point. Eight at a time, so that it stops up to seven before the end
/// of the text.
std::size_t SkipPlain(std::string_view text, std::size_t at, char separator) {
  constexpr uint64_t kEach = 0x0101010101010101;
  constexpr uint64_t kHighBits = kEach * 0x80;
  const uint64_t after = kEach * static_cast<uint64_t>(std::max(separator, '"') + 1);
  for (uint64_t letters; text.size() - at >= sizeof(letters); at += sizeof(letters)) {
    std::memcpy(&letters, text.data() + at, sizeof(letters));
    // A byte up to the separator borrows, which sets its high bit; the first that does so is exact.
    const uint64_t found = ((letters - after) | letters) & kHighBits;
    if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }
  return at;
}

}  // namespace

CsvScanner::CsvScanner(std::string_view text, const std::string& path, char separator)
    : text_(text), path_(path), separator_(separator) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
}

CsvScanner::CsvScanner(const RowBlock& block, const std::string& path, char separator)
    : CsvScanner(block.text, path, separator) {
  is_cut_ = block.is_cut;
  next_line_ = block.first_line;
  if (next_line_ > 1) at_ = 0;
}

bool CsvScanner::NextRow(std::vector<Field>& fields) {
  fields.clear();
  if (AtEnd()) return false;
  line_ = next_line_++;
  unquoted_count_ = 0;
  do {
    if (fields.size() >= kMostColumns) throw Bad("has more than 10000 fields");
    ReadField(fields.emplace_back());
  } while (TakeSeparator());
  if (is_cut_ && AtEnd()) throw TooLong();
  TakeLineEnd();
  return true;
}

Failure CsvScanner::Bad(const std::string& what) const { return BadInput(PlaceOf(line_), what); }

void CsvScanner::ReadField(Field& field) {
  if (!AtEnd() && text_[at_] == '"') return ReadQuotedField(field);
  const std::size_t begin = at_;
  unsigned char seen = 0;
  for (at_ = SkipPlain(text_, at_, separator_); !AtEnd();
       at_ = SkipPlain(text_, at_ + 1, separator_)) {
    const char letter = text_[at_];
    if (EndsField(letter)) break;
    seen |= static_cast<unsigned char>(letter);
  }
  if (!AtEnd() && text_[at_] == '"') {
    throw Bad("there is a quote within a field that does not begin with one");
  }
  field.text = text_.substr(begin, at_ - begin);
  field.is_null = field.text.empty();
  if (seen >= 0x80) CheckUtf8(field.text);
}

void CsvScanner::ReadQuotedField(Field& field) {
  const std::size_t begin = ++at_;
  bool doubled = false;
  for (;; ++at_) {
    at_ = text_.find('"', at_);
    if (at_ == std::string_view::npos) {
      throw is_cut_ ? TooLong() : Bad("a quoted field does not end; a quotation mark is missing");
    }
    if (at_ + 1 >= text_.size() || text_[at_ + 1] != '"') break;
    doubled = true;
    ++at_;
  }
  const std::string_view text = text_.substr(begin, at_ - begin);
  ++at_;
  next_line_ += static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
  CheckUtf8(text);
  field.text = doubled ? Unquoted(text) : text;
}

std::string_view CsvScanner::Unquoted(std::string_view field) {
  if (unquoted_count_ == unquoted_.size()) unquoted_.push_back(std::make_unique<std::string>());
  std::string& text = *unquoted_[unquoted_count_++];
  text.clear();
  for (std::size_t at = 0; at < field.size(); ++at) {
    text += field[at];
    if (field[at] == '"') ++at;
  }
  return text;
}

bool CsvScanner::EndsField(char letter) const {
  return letter == separator_ || letter == '\n' || letter == '\r' || letter == '"';
}

bool CsvScanner::TakeSeparator() {
  if (AtEnd() || text_[at_] != separator_) return false;
  ++at_;
  return true;
}

void CsvScanner::TakeLineEnd() {
  if (AtEnd()) return;
  if (text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n') ++at_;
  if (text_[at_] != '\n') {
    throw Bad(text_[at_] == '\r' ? "there is a CR without LF"
                                 : "there is text after a quoted field");
  }
  ++at_;
}

Failure CsvScanner::TooLong() const {
  return Bad("the row is longer than " + std::to_string(RowBlocks::kLongestRow >> 20) +
             " MB; a quote may be missing");
}

void CsvScanner::CheckUtf8(std::string_view field) const {
  if (!IsUtf8(field)) throw Bad("a field is not valid UTF-8. Save the file as UTF-8.");
}

}  // namespace vok::olap
