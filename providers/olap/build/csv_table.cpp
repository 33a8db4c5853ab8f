// CSV as RFC 4180 has it: commas, quotes doubled within quotes, CR LF or LF, a header row. UTF-8,
// with or without a mark at the beginning. An empty field is NULL, an empty text is written "".
#include <algorithm>
#include <filesystem>
#include <utility>

#include "providers/olap/build/bad_input.h"
#include "providers/olap/build/table_source.h"
#include "providers/olap/storage/bytes.h"

namespace vok::olap {
namespace {

constexpr std::size_t kMostColumns = 10000;

/// Cuts the text into rows of fields.
class CsvScanner {
 public:
  CsvScanner(std::string_view text, const std::string& path) : text_(text), path_(path) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
  }

  /// Replaces `fields` by the next row's; false at the end.
  bool NextRow(std::vector<Field>& fields) {
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

  std::string PlaceOf(uint64_t line) const { return path_ + ", line " + std::to_string(line); }
  uint64_t line() const { return line_; }
  std::size_t position() const { return at_; }
  std::size_t size() const { return text_.size(); }
  Failure Bad(const std::string& what) const { return BadInput(PlaceOf(line_), what); }

 private:
  bool AtEnd() const { return at_ >= text_.size(); }

  Field NextField() {
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

  Field QuotedField() {
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

  std::string_view Unquoted(std::string_view field) {
    if (unquoted_count_ == unquoted_.size()) unquoted_.push_back(std::make_unique<std::string>());
    std::string& text = *unquoted_[unquoted_count_++];
    text.clear();
    for (std::size_t at = 0; at < field.size(); ++at) {
      text += field[at];
      if (field[at] == '"') ++at;
    }
    return text;
  }

  bool TakeComma() {
    if (AtEnd() || text_[at_] != ',') return false;
    ++at_;
    return true;
  }

  void TakeLineEnd() {
    if (AtEnd()) return;
    if (text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n') ++at_;
    if (text_[at_] != '\n') {
      throw Bad(text_[at_] == '\r' ? "there is a CR without LF"
                                   : "there is text after a quoted field");
    }
    ++at_;
  }

  void CheckUtf8(std::string_view field) const {
    if (!IsUtf8(field)) throw Bad("a field is not valid UTF-8. Save the file as UTF-8.");
  }

  std::string_view text_;
  const std::string& path_;
  std::size_t at_ = 0;
  uint64_t line_ = 0;
  uint64_t next_line_ = 1;
  std::vector<std::unique_ptr<std::string>> unquoted_;  // of the current row; kept for the next
  std::size_t unquoted_count_ = 0;
};

class CsvReader : public TableReader {
 public:
  CsvReader(const Files& files, std::string path, const std::vector<std::string>& columns)
      : path_(std::move(path)), mapped_(files.Map(path_)), scanner_(TextOf(*mapped_), path_) {
    if (!scanner_.NextRow(row_)) throw BadInput(path_, "is empty; a header row is expected");
    std::vector<std::string> header;
    for (const Field& field : row_) header.emplace_back(field.text);
    width_ = header.size();
    places_ = PlacesOf(columns, header, path_);
    picked_.resize(columns.size());
    first_row_ = scanner_.position();
  }

  bool Next() override {
    if (!scanner_.NextRow(row_)) return false;
    if (row_.size() != width_) {
      throw scanner_.Bad("has " + std::to_string(row_.size()) + " fields, the header has " +
                         std::to_string(width_));
    }
    for (std::size_t index = 0; index < places_.size(); ++index) {
      picked_[index] = row_[places_[index]];
    }
    return true;
  }

  std::span<const Field> Fields() const override { return picked_; }
  std::string PlaceOf(uint64_t line) const override { return scanner_.PlaceOf(line); }
  uint64_t Line() const override { return scanner_.line(); }

  double Done() const override {
    return static_cast<double>(scanner_.position()) / static_cast<double>(scanner_.size());
  }

  uint64_t RowEstimate() const override {
    constexpr std::size_t kSample = 65536;
    const auto sample = TextOf(*mapped_).substr(first_row_, kSample);
    const auto lines = 1 + std::count(sample.begin(), sample.end(), '\n');
    return (scanner_.size() - first_row_) * static_cast<uint64_t>(lines) / (sample.size() + 1) + 1;
  }

 private:
  static std::string_view TextOf(const MappedFile& file) {
    const auto bytes = file.Bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  std::string path_;
  std::unique_ptr<MappedFile> mapped_;
  CsvScanner scanner_;
  std::vector<Field> row_;
  std::size_t width_ = 0;
  std::vector<std::size_t> places_;
  std::vector<Field> picked_;
  std::size_t first_row_ = 0;
};

class CsvFolder : public TableSource {
 public:
  CsvFolder(const Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  std::unique_ptr<TableReader> Open(const std::string& table,
                                    const std::vector<std::string>& columns) const override {
    // A table's name is a file's name, never a way out of the folder.
    const bool is_name = table.find_first_of("/\\") == std::string::npos;
    const std::string path = path_ + "/" + table + ".csv";
    if (!is_name || !files_.Exists(path)) {
      throw BadInput(path_,
                     "there is no file " + Quoted(table + ".csv") +
                         ", whose table the schema names. Tables there: " + Listed(Tables()));
    }
    return std::make_unique<CsvReader>(files_, path, columns);
  }

 private:
  std::vector<std::string> Tables() const {
    std::vector<std::string> names;
    std::error_code ignored;
    std::filesystem::directory_iterator entries(files_.NativePath(path_), ignored);
    for (const auto& entry : entries) {
      if (entry.path().extension() == ".csv") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const Files& files_;
  std::string path_;
};

}  // namespace

std::unique_ptr<TableSource> OpenCsvFolder(const Files& files, const std::string& path) {
  return std::make_unique<CsvFolder>(files, path);
}

}  // namespace vok::olap
