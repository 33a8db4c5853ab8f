#include "providers/cube/olap/build/server_tables.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/utf8.h"

namespace vok::olap {
namespace {

/// What a backslash before the letter stands for.
char Meant(char letter) {
  constexpr std::string_view kLetters = "bfnrtv0";
  constexpr std::string_view kMeant("\b\f\n\r\t\v\0", kLetters.size());
  const std::size_t at = kLetters.find(letter);
  return at == kLetters.npos ? letter : kMeant[at];
}

/// In place: what it stands for is never longer.
std::string_view Unescaped(char* begin, char* end) {
  char* to = std::find(begin, end, '\\');
  for (const char* from = to; from < end; ++from) {
    *to++ = *from == '\\' && from + 1 < end ? Meant(*++from) : *from;
  }
  return {begin, to};
}

class ServerPart : public TableReader {
 public:
  ServerPart(std::string text, std::string place, uint64_t first_row, std::size_t width)
      : text_(std::move(text)),
        place_(std::move(place)),
        row_(first_row - 1),
        at_(text_.data()),
        end_(text_.data() + text_.size()),
        is_utf8_(IsUtf8(text_)),
        fields_(width) {}

  bool Next() override {
    if (at_ == end_) return false;
    ++row_;
    for (Field& field : fields_) {
      const bool is_last = &field == &fields_.back();
      TakeField(is_last ? '\n' : '\t', field);
    }
    return true;
  }
  std::span<const Field> Fields() const override { return fields_; }
  std::string PlaceOf(uint64_t row) const override {
    return place_ + ", row " + std::to_string(row);
  }
  uint64_t Line() const override { return row_; }

 private:
  void TakeField(char last, Field& field) {
    char* end = at_;
    while (end < end_ && *end != '\t' && *end != '\n') ++end;
    if (end == end_ || *end != last) {
      throw BadInput(Place(), "the server sent another number of fields than was asked for");
    }
    const std::string_view written(at_, end);
    field.is_null = written == "\\N";
    field.text = field.is_null ? std::string_view() : Unescaped(at_, end);
    if (!is_utf8_ && !IsUtf8(field.text)) throw BadInput(Place(), "a field is not valid UTF-8");
    at_ = end + 1;
  }

  std::string text_;
  std::string place_;
  uint64_t row_;
  char* at_;
  char* end_;
  bool is_utf8_;
  std::vector<Field> fields_;
};

class ServerParts : public TableParts {
 public:
  ServerParts(std::unique_ptr<ServerRows> rows, std::string place, std::size_t width)
      : rows_(std::move(rows)), place_(std::move(place)), width_(width) {}

  std::unique_ptr<TableReader> Next() override {
    std::string text;
    if (!rows_->Next(text)) return nullptr;
    const uint64_t first = given_ + 1;
    given_ += static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
    return std::make_unique<ServerPart>(std::move(text), place_, first, width_);
  }
  double Done() const override {
    const double rows = std::max(rows_->Guess(), 1.0);
    return std::min(static_cast<double>(given_) / rows, 1.0);
  }

 private:
  std::unique_ptr<ServerRows> rows_;
  std::string place_;
  std::size_t width_;
  uint64_t given_ = 0;  // rows
};

class ServerTables : public TableSource {
 public:
  explicit ServerTables(std::unique_ptr<TableServer> server) : server_(std::move(server)) {}

  std::unique_ptr<TableParts> OpenParts(const TableName& table,
                                        const std::vector<std::string>& columns) const override {
    TableQuestion question{table, {}};
    for (const std::string& column : columns) question.columns.push_back({column});
    return Ask(question);
  }

  std::unique_ptr<TableParts> Ask(const TableQuestion& question) const override {
    const std::string place = server_->address() + ", table " + ShownName(question.table);
    const auto there = server_->Columns(question.table);
    std::vector<std::string> names;
    names.reserve(there.size());
    for (const ServerColumn& column : there) names.push_back(column.name);
    std::vector<std::string> wanted;
    for (const AskedColumn& column : question.columns) {
      if (!column.name.empty()) wanted.push_back(column.name);
    }
    for (const std::size_t at : PlacesOf(wanted, names, place)) Remark(there[at], place);
    if (!question.ranges.empty()) {
      CheckOrder(question, there[PlacesOf({question.key_column}, names, place)[0]], place);
    }
    return std::make_unique<ServerParts>(server_->Read(question), place, question.columns.size());
  }

  std::string AddressToKeep() const override { return server_->AddressToKeep(); }

  /// The server shows one state of the database.
  void CheckUnchanged() const override {}
  std::vector<std::string> Remarks() const override { return remarks_; }

 private:
  /// To the server, texts of digits are in the order of the numbers only when they are of one
  /// length.
  static void CheckOrder(const TableQuestion& question, const ServerColumn& column,
                         const std::string& place) {
    if (!column.is_text) return;
    const std::size_t length = question.ranges.front().low.size();
    for (const KeyRange& range : question.ranges) {
      for (const std::string* key : {&range.low, &range.high}) {
        if (key->empty() || key->size() == length) continue;
        throw BadInput(place, "the column " + Quoted(column.name) +
                                  " holds texts of several lengths, whose order is not that of "
                                  "time, so single months cannot be read. Make it a column of "
                                  "numbers or dates, or build the whole cube");
      }
    }
  }

  void Remark(const ServerColumn& column, const std::string& place) const {
    if (!column.is_binary_fraction) return;
    const std::string remark =
        place + ": the column " + Quoted(column.name) +
        " holds binary fractions (double precision), in which most amounts are not exact. They are "
        "read as the server writes them. Make it a column of type numeric";
    if (std::find(remarks_.begin(), remarks_.end(), remark) == remarks_.end()) {
      remarks_.push_back(remark);
    }
  }

  std::unique_ptr<TableServer> server_;
  mutable std::vector<std::string> remarks_;
};

}  // namespace

std::unique_ptr<TableSource> OpenServerTables(std::unique_ptr<TableServer> server) {
  return std::make_unique<ServerTables>(std::move(server));
}

}  // namespace vok::olap
