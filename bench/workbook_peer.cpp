#include "bench/workbook_peer.h"

#include <sqlite3.h>
#include <xlsxwriter.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "bench/query_peer.h"
#include "bench/workbook_lines.h"

namespace vok::bench {
namespace {

[[noreturn]] void Fail(const std::string& what) {
  std::cerr << what << '\n';
  std::exit(1);
}

/// A workbook in constant memory with the formats of a report, and the row that comes next.
class PeerBook {
 public:
  explicit PeerBook(const std::string& file) {
    lxw_workbook_options options = {};
    options.constant_memory = LXW_TRUE;
    book_ = workbook_new_opt(file.c_str(), &options);
    sheet_ = workbook_add_worksheet(book_, "Data");
    lxw_format* text = Format("@");
    worksheet_set_column(sheet_, 0, kCaptions - 1, 20, text);
    formats_ = {Format("#,##0"), Format("#,##0.00")};
    for (std::size_t i = 0; i < 2 * kPeriods; ++i) {
      const std::string label = (i % 2 == 0 ? "Q" : "M") + std::to_string(i / 2 + 1) + ">";
      worksheet_write_string(sheet_, 0, Column(kCaptions + i), label.c_str(), nullptr);
    }
  }

  void AddText(std::size_t column, const std::string& text) {
    if (text.empty()) return;
    worksheet_write_string(sheet_, row_, Column(column), text.c_str(), nullptr);
  }
  void AddNumber(std::size_t period_column, double number) {
    if (number == 0) return;
    worksheet_write_number(sheet_, row_, Column(kCaptions + period_column), number,
                           formats_[period_column % 2]);
  }
  void NextRow() { ++row_; }
  void Close() {
    if (workbook_close(book_) != LXW_NO_ERROR) Fail("libxlsxwriter cannot write its workbook");
  }

 private:
  static lxw_col_t Column(std::size_t column) { return static_cast<lxw_col_t>(column); }
  lxw_format* Format(const char* code) {
    lxw_format* format = workbook_add_format(book_);
    format_set_num_format(format, code);
    return format;
  }

  lxw_workbook* book_;
  lxw_worksheet* sheet_;
  std::array<lxw_format*, 2> formats_;
  lxw_row_t row_ = 1;
};

/// "0", then the caption field by field, each where a report has it.
void AddCaption(PeerBook& book, std::string_view caption) {
  constexpr std::array<std::size_t, kCaptions - 1> kColumns{1, 2, 9, 10, 3, 7, 8, 4, 5, 6};
  std::array<std::string, kCaptions> fields{"0"};
  for (const std::size_t column : kColumns) {
    const std::size_t tab = caption.find('\t');
    fields[column] = caption.substr(0, tab);
    if (tab == std::string_view::npos) break;
    caption.remove_prefix(tab + 1);
  }
  for (std::size_t i = 0; i < kCaptions; ++i) book.AddText(i, fields[i]);
}

std::string OpeningSql() {
  return "select line_id, sum(units), sum(amount) from entries where ledger_id = 1 and "
         "opening_key = 0 and date_id between 20240101 and 20240131 group by line_id";
}

/// Lines whose figures are all zero or missing are left out, as the cube does.
void AddAnswers(sqlite3* database, const std::string& question, PeerBook& book) {
  const std::string sql = "select * from (" + question + ") join lines using (line_id)";
  sqlite3_stmt* select = nullptr;
  if (sqlite3_prepare_v2(database, sql.c_str(), -1, &select, nullptr) != SQLITE_OK) {
    Fail(sqlite3_errmsg(database));
  }
  const int caption = sqlite3_column_count(select) - 1;
  while (sqlite3_step(select) == SQLITE_ROW) {
    AddCaption(book, reinterpret_cast<const char*>(sqlite3_column_text(select, caption)));
    for (int column = 1; column < caption; ++column) {
      const auto number = static_cast<double>(sqlite3_column_int64(select, column));
      book.AddNumber(static_cast<std::size_t>(column - 1), column % 2 == 1 ? number : number / 100);
    }
    book.NextRow();
  }
  sqlite3_finalize(select);
}

}  // namespace

void WritePeer(const std::string& file, std::size_t lines, int passes) {
  PeerBook book(file);
  for (int pass = 0; pass < passes; ++pass) {
    for (std::size_t number = 0; number < lines; ++number) {
      const Line line = LineOf(number);
      for (std::size_t i = 0; i < kCaptions; ++i) book.AddText(i, line.captions[i]);
      for (std::size_t i = 0; i < line.numbers.size(); ++i) book.AddNumber(i, line.numbers[i]);
      book.NextRow();
    }
  }
  book.Close();
}

void RunPeer(const std::string& database_file, const std::string& file, int passes) {
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(database_file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) !=
      SQLITE_OK) {
    Fail(sqlite3_errmsg(database));
  }
  sqlite3_exec(database, "pragma mmap_size=100000000000", nullptr, nullptr, nullptr);
  PeerBook book(file);
  AddAnswers(database, QuestionSql(Slice::kLedger), book);
  if (passes > 1) AddAnswers(database, OpeningSql(), book);
  book.Close();
  sqlite3_close(database);
}

}  // namespace vok::bench
