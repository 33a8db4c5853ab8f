#include "providers/olap/build/csv_scanner.h"

#include <algorithm>

#include "providers/olap/build/bad_input.h"
#include "providers/olap/storage/bytes.h"

namespace vok::olap {
namespace {

constexpr std::size_t kMostColumns = 10000;

}  // namespace

CsvScanner::CsvScanner(std::string_view text, const std::string& path) : text_(text), path_(path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
}

bool CsvScanner::NextRow(std::vector<Field>& fields) {
  fields.clear();
  if (at_ >= text_.size()) return false;
  line_ = next_line_++;
  unquoted_count_ = 0;
  do {
    if (fields.size() >= kMostColumns) throw Bad("has more than 10000 fields");
    fields.push_back(NextField());
  } while (TakeComma());
  TakeLineEnd();
  return true;
}

Failure CsvScanner::Bad(const std::string& what) const { return BadInput(PlaceOf(line_), what); }

Field CsvScanner::NextField() {
  if (!AtEnd() && text_[at_] == '"') return QuotedField();
  const std::size_t begin = at_;
  unsigned char seen = 0;
  for (; !AtEnd(); ++at_) {
    const char letter = text_[at_];
    if (letter == ',' || letter == '\n' || letter == '\r') break;
    if (letter == '"') throw Bad("there is a quote within a field that does not begin with one");
    seen |= static_cast<unsigned char>(letter);
  }
  const std::string_view field = text_.substr(begin, at_ - begin);
  if (seen >= 0x80) CheckUtf8(field);
  return {field, field.empty()};
}

Field CsvScanner::QuotedField() {
  const std::size_t begin = ++at_;
  bool doubled = false;
  for (;; ++at_) {
    at_ = text_.find('"', at_);
    if (at_ == std::string_view::npos) {
      at_ = text_.size();
      throw Bad("a quoted field does not end");
    }
    if (at_ + 1 >= text_.size() || text_[at_ + 1] != '"') break;
    doubled = true;
    ++at_;
  }
  std::string_view field = text_.substr(begin, at_ - begin);
  ++at_;
  next_line_ += static_cast<uint64_t>(std::count(field.begin(), field.end(), '\n'));
  CheckUtf8(field);
  return {doubled ? Unquoted(field) : field, false};
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

bool CsvScanner::TakeComma() {
  if (AtEnd() || text_[at_] != ',') return false;
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

void CsvScanner::CheckUtf8(std::string_view field) const {
  if (!IsUtf8(field)) throw Bad("a field is not valid UTF-8. Save the file as UTF-8.");
}

}  // namespace vok::olap
