// Writes the sample that both sides of the comparison read: a star of CSV tables, always the same.
//
//   interop_sample FOLDER
//
// Months without facts stand at both ends, amounts are quarters (exact in binary, so that no sum
// depends on its order), and the last lines have facts placed by hand: such that cancel, a zero,
// unknown units, the opening balance only, none at all.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kFirstYear = 2009;
constexpr int kYears = 3;
constexpr int kFacts = 6000;
constexpr int kRandomLines = 60;

/// One CSV file; texts are quoted, an empty number is NULL.
class Table {
 public:
  Table(const std::filesystem::path& folder, const std::string& name, std::string_view header)
      : out_(folder / (name + ".csv"), std::ios::binary) {
    out_ << header << '\n';
  }
  ~Table() {
    if (!out_.flush()) std::cerr << "A table could not be written\n";
  }
  Table& Number(std::string_view number) { return Put(number); }
  Table& Number(int number) { return Put(std::to_string(number)); }
  Table& Text(std::string_view text) {
    std::string quoted = "\"";
    for (const char letter : text) {
      if (letter == '"') quoted += '"';
      quoted += letter;
    }
    return Put(quoted + '"');
  }
  void End() {
    out_ << '\n';
    first_ = true;
  }

 private:
  Table& Put(std::string_view field) {
    out_ << (first_ ? "" : ",") << field;
    first_ = false;
    return *this;
  }

  std::ofstream out_;
  bool first_ = true;
};

struct Line {
  std::string_view section;
  std::string_view item;
};

/// Names with all that naive code breaks on; the rest are "Item n".
constexpr std::array kOddLines = {
    Line{"Assets", "Brackets [x]] and ]"},
    Line{"Assets", "R&D <b> \"quoted\" 'single'"},
    Line{"Assets", "Счёт € ü"},
    Line{"Assets", "חשבון בנק"},
    Line{"Assets", "  two leading, two trailing  "},
    Line{"Assets", "A.b,c;d=e&amp;"},
    Line{"Assets", "Item 6, again"},
    Line{"Expenses", "100% -- /* no comment */"},
};
constexpr std::array<std::string_view, 4> kSections = {"Assets", "Expenses", "Income",
                                                       "Liabilities"};

struct File {
  std::string_view ledger;
  std::string_view file;
};
constexpr std::array kFiles = {
    File{"Ledger1", "book-a.xls"}, File{"Ledger1", "book-b.xls"},
    File{"Ledger1", "book-c.xls"}, File{"Ledger1", "unused.xls"},
    File{"Ledger2", "book-a.xls"}, File{"Ledger2", "book-d.xls"},
    File{"Ledger3", "unused.xls"}, File{"Ledger & Sons]", "book.xls"},
};
constexpr std::array kUsedFiles = {0, 1, 2, 4, 5, 7};
constexpr std::array<std::string_view, 4> kMoney = {"EUR", "RUB", "USD", "XXX"};
constexpr std::array<std::string_view, 4> kNicknames = {"euro", "Rouble", "Dollar", "none"};
constexpr std::array<std::string_view, 12> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

struct Fact {
  int date;
  int line;
  int file;
  int opening;
  int money;
  std::string_view amount;
  std::string_view units;
};

constexpr int kOdd = kRandomLines;  // the first line whose facts are placed by hand
constexpr std::array kPlaced = {
    Fact{20100210, kOdd, 0, 0, 0, "10.5", "2"},       // cancel each other within a month
    Fact{20100211, kOdd, 0, 0, 0, "-10.5", "-2"},     //
    Fact{20100215, kOdd + 1, 1, 0, 0, "7.25", ""},    // units unknown
    Fact{20091231, kOdd + 2, 0, 0, 1, "100", "1"},    // one month, before
    Fact{20100401, kOdd + 3, 2, 0, 2, "40.25", "4"},  // one month, behind
    Fact{20100301, kOdd + 4, 0, 1, 0, "55.5", "5"},   // the opening balance only
    Fact{20100301, kOdd + 5, 4, 0, 0, "66.5", "6"},   // another ledger
    Fact{20100301, kOdd + 6, 0, 0, 0, "0", "0"},      // zero
    Fact{20100301, kOdd + 7, 0, 0, 0, "", "3"},       // amount unknown
};
constexpr int kLines = kOdd + 10;  // the last two have no facts

int DaysIn(int year, int month) {
  if (month == 2) return year % 4 == 0 ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

std::vector<int> WriteDates(const std::filesystem::path& folder) {
  Table table(folder, "dates",
              "date_id,year_no,quarter_no,month_no,day_no,month_name,quarter_name");
  std::vector<int> days;
  for (int year = kFirstYear; year < kFirstYear + kYears; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= DaysIn(year, month); ++day) {
        days.push_back(year * 10000 + month * 100 + day);
        table.Number(days.back()).Number(year).Number((month + 2) / 3).Number(month).Number(day);
        table.Text(kMonthNames[static_cast<std::size_t>(month - 1)]);
        table.Text("Q" + std::to_string((month + 2) / 3)).End();
      }
    }
  }
  return days;
}

std::string Caption(std::string_view section, std::string_view item, int line) {
  const std::string number = std::to_string(line);
  return "L" + std::string(3 - number.size(), '0') + number + '\t' + std::string(section) + '\t' +
         std::string(item) + "\t\tA-" + number + (line % 3 == 0 ? "\t" : "\tend");
}

void WriteLines(const std::filesystem::path& folder) {
  Table table(folder, "lines", "line_id,section,grp,item,caption,sort");
  for (int line = 0; line < kLines; ++line) {
    const auto index = static_cast<std::size_t>(line);
    const bool odd = index < kOddLines.size();
    const std::string_view section = odd ? kOddLines[index].section : kSections[index % 4];
    const std::string item =
        odd ? std::string(kOddLines[index].item) : "Item " + std::to_string(line);
    const std::string group = "G" + std::to_string(line / 4 % 3);
    table.Number(line).Text(section).Text(group).Text(item).Text(Caption(section, item, line));
    table.Number(kLines - line).End();
  }
}

void WriteSmallTables(const std::filesystem::path& folder) {
  Table files(folder, "files", "file_id,ledger,file");
  for (std::size_t i = 0; i < kFiles.size(); ++i) {
    files.Number(static_cast<int>(i)).Text(kFiles[i].ledger).Text(kFiles[i].file).End();
  }
  Table opening(folder, "opening", "opening_id,meaning");
  opening.Number(0).Text("movement").End();
  opening.Number(1).Text("opening balance").End();
  Table money(folder, "money", "money_id,code,nickname");
  for (std::size_t i = 0; i < kMoney.size(); ++i) {
    money.Number(static_cast<int>(i)).Text(kMoney[i]).Text(kNicknames[i]).End();
  }
}

/// A number of quarters as a decimal.
std::string Quarters(int number) {
  constexpr std::array<std::string_view, 4> kEnds = {"", ".25", ".5", ".75"};
  const int magnitude = number < 0 ? -number : number;
  return (number < 0 ? "-" : "") + std::to_string(magnitude / 4) +
         std::string(kEnds[static_cast<std::size_t>(magnitude % 4)]);
}

void WriteFacts(const std::filesystem::path& folder, const std::vector<int>& days) {
  Table table(folder, "facts", "date_id,line_id,file_id,opening_id,money_id,amount,units");
  for (const Fact& fact : kPlaced) {
    table.Number(fact.date).Number(fact.line).Number(fact.file).Number(fact.opening);
    table.Number(fact.money).Number(fact.amount).Number(fact.units).End();
  }
  std::mt19937_64 engine(20100401);
  const auto below = [&engine](int limit) {
    return static_cast<int>(engine() % static_cast<uint64_t>(limit));
  };
  // January and February of the first year and the last two months stay without facts.
  const int used_days = static_cast<int>(days.size()) - 59 - 61;
  for (int i = 0; i < kFacts; ++i) {
    const int common = below(kRandomLines);  // the product makes high lines rare
    table.Number(days[static_cast<std::size_t>(59 + below(used_days))]);
    table.Number(common * below(kRandomLines) / kRandomLines);
    table.Number(kUsedFiles[static_cast<std::size_t>(below(kUsedFiles.size()))]);
    table.Number(below(10) == 0 ? 1 : 0).Number(below(3)).Number(Quarters(below(80001) - 20000));
    table.Number(below(12) == 0 ? std::string() : std::to_string(below(41) - 5)).End();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: interop_sample FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  const std::vector<int> days = WriteDates(folder);
  WriteLines(folder);
  WriteSmallTables(folder);
  WriteFacts(folder, days);
}
