#include "providers/cube/olap/build/csv_scanner.h"

#include <algorithm>
#include <span>

#include "platform/utf8.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/bytes.h"

namespace vok::olap {
namespace {

constexpr std::size_t kMostColumns = 10000;
constexpr std::size_t kLongestRow = std::size_t{16} << 20;

}  // namespace

CsvScanner::CsvScanner(std::string_view text, const std::string& path) : text_(text), path_(path) {
  SkipMark();
}

CsvScanner::CsvScanner(const FileReader& file, const std::string& path)
    : file_(&file), path_(path) {
  Widen();
  SkipMark();
}

void CsvScanner::SkipMark() {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
}

/// A row that ends after the window, which it can within quotes alone, is scanned again in a wider
/// one.
bool CsvScanner::NextRow(std::vector<Field>& fields) {
  for (;;) {
    fields.clear();
    if (AtEnd() && !SeesEnd()) Widen();
    if (AtEnd()) return false;
    const std::size_t begin = at_;
    line_ = next_line_++;
    if (ScanRow(fields)) return true;
    at_ = begin;
    next_line_ = line_;
    Widen();
  }
}

bool CsvScanner::ScanRow(std::vector<Field>& fields) {
  is_cut_ = false;
  unquoted_count_ = 0;
  do {
    if (fields.size() >= kMostColumns) throw Bad("has more than 10000 fields");
    fields.push_back(NextField());
    if (is_cut_) return false;
  } while (TakeComma());
  TakeLineEnd();
  return true;
}

/// The window begins with the current row and has at least one more line end, or the file's.
void CsvScanner::Widen() {
  line_ = next_line_;
  piece_.erase(0, at_);
  window_begin_ += at_;
  at_ = 0;
  std::size_t lines_end = 0;
  do {
    if (piece_.size() > kLongestRow) {
      throw Bad("the row is longer than " + std::to_string(kLongestRow >> 20) +
                " MB; a quote may be missing");
    }
    const std::size_t before = piece_.size();
    ReadPiece();
    lines_end = std::string_view(piece_).substr(before).rfind('\n');
    lines_end = lines_end == std::string_view::npos ? 0 : before + lines_end + 1;
    if (window_begin_ + piece_.size() == file_->Size()) lines_end = piece_.size();
  } while (lines_end == 0 && window_begin_ + piece_.size() < file_->Size());
  text_ = std::string_view(piece_).substr(0, lines_end);
}

void CsvScanner::ReadPiece() {
  constexpr uint64_t kPiece = uint64_t{1} << 20;
  const std::size_t before = piece_.size();
  const uint64_t from = window_begin_ + before;
  piece_.resize(before + static_cast<std::size_t>(std::min(kPiece, file_->Size() - from)));
  file_->Read(from, std::as_writable_bytes(std::span(piece_).subspan(before)));
  if (window_begin_ + piece_.size() == file_->Size() && file_->HasChanged()) {
    throw FileChanged(path_);
  }
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
      is_cut_ = !SeesEnd();
      if (is_cut_) return {};
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
