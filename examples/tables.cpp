#include "examples/tables.h"

#include <array>
#include <stdexcept>

namespace vok::examples {
namespace {

/// The report's section, its lines' unit and sign, in the order of `Kind`.
struct Section {
  int digit;
  std::string_view unit, sign;
};
constexpr std::array<Section, kKinds> kSections = {{{3, "pcs", "+"},
                                                    {4, "pcs", "-"},
                                                    {5, "", "-"},
                                                    {6, "pcs", "-"},
                                                    {7, "", "-"},
                                                    {8, "", "-"},
                                                    {2, "", "+"},
                                                    {1, "pcs", "+"}}};
constexpr Section kOverheadSection = {9, "", "-"};

std::string Padded(int number, size_t width) {
  std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

int DateKey(int month, int day) {
  return ((kFirstYear + month / 12) * 100 + month % 12 + 1) * 100 + day;
}

struct ReportLine {
  Section section;
  int number;
  Name first, second;
  std::string suffix;  // tells the second hundred of goods from the first
};

ReportLine LineAt(int line) {
  if (line < kOverheadLines) {
    size_t departments = kDepartments.size();
    auto index = static_cast<size_t>(line);
    return {kOverheadSection, line + 1, kOverheads[index / departments],
            kDepartments[index % departments], ""};
  }
  int goods = (line - kOverheadLines) / kKinds;
  auto kind = static_cast<size_t>((line - kOverheadLines) % kKinds);
  int names = static_cast<int>(kGoods.size());
  std::string suffix = goods < names ? "" : " " + std::to_string(goods / names + 1);
  return {kSections[kind], goods + 1, kKindNames[kind], kGoods[static_cast<size_t>(goods % names)],
          suffix};
}

std::string Title(const ReportLine& line, std::string_view Name::*language) {
  std::string text(line.first.*language);
  return text.append(": ").append(line.second.*language).append(line.suffix);
}

/// Ten fields: code, English name, sort key, print style, unit, sign, section, and the names in
/// Hebrew, Russian and German.
std::string Caption(const ReportLine& line) {
  std::string code = std::to_string(line.section.digit) + Padded(line.number, 4);
  std::string text = code + "\t" + Title(line, &Name::english);
  text += "\t" + Padded(line.section.digit, 2) + "." + Padded(line.number, 6);
  text += line.number == 1 ? "\tB" : "\tN";
  text.append("\t").append(line.section.unit).append("\t").append(line.section.sign);
  text += "\t" + std::to_string(line.section.digit) + "\t" + Title(line, &Name::hebrew);
  return text + "\t" + Title(line, &Name::russian) + "\t" + Title(line, &Name::german);
}

std::string BookName(int file) {
  constexpr std::array<std::string_view, 4> kBooks = {"Sales book", "Purchase book", "Cash book",
                                                      "Journal"};
  std::string name(kBooks[static_cast<size_t>(file % 4)]);
  return file < 4 ? name : name + " " + std::to_string(file / 4 + 1);
}

void WriteDates(const Plan& plan) {
  OutputFile file(plan.output / "dates.csv");
  file << "date_id,year,quarter,month" << (plan.days ? ",day\n" : "\n");
  for (int month = 0; month < plan.months; ++month) {
    for (int day = 1; day <= (plan.days ? DaysInMonth(month) : 1); ++day) {
      file << DateKey(month, day) << "," << kFirstYear + month / 12 << "," << month % 12 / 3 + 1
           << "," << month % 12 + 1;
      if (plan.days) file << "," << day;
      file << "\n";
    }
  }
  file.Close();
}

void WriteLines(const Plan& plan) {
  OutputFile file(plan.output / "lines.csv");
  file << "line_id,code,caption,sort\n";
  for (int index = 0; index < plan.lines; ++index) {
    ReportLine line = LineAt(index);
    std::string code = std::to_string(line.section.digit) + Padded(line.number, 4);
    file << index + 1 << "," << code << ",";
    file.Field(Caption(line));
    file << "," << int64_t{line.section.digit} * 1'000'000 + line.number << "\n";
  }
  file.Close();
}

void WriteFiles(const Plan& plan) {
  OutputFile file(plan.output / "files.csv");
  file << "file_id,ledger,file\n";
  for (int index = 0; index < plan.ledgers * plan.files; ++index) {
    file << index + 1 << ",";
    file.Field(LedgerName(index / plan.files));
    file << ",";
    file.Field(BookName(index % plan.files));
    file << "\n";
  }
  file.Close();
}

void WriteEntry(OutputFile* file, const Plan& plan, const Entry& entry) {
  int64_t cents = entry.cents < 0 ? -entry.cents : entry.cents;
  *file << DateKey(entry.month, plan.days ? entry.day : 1) << "," << entry.line + 1 << ","
        << entry.ledger * plan.files + entry.file + 1 << "," << entry.key << "," << entry.money + 1
        << "," << (entry.cents < 0 ? "-" : "") << cents / 100 << "."
        << Padded(static_cast<int>(cents % 100), 2) << ",";
  if (entry.units) *file << *entry.units;
  *file << "\n";
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path)
    : path_(path), stream_(path, std::ios::binary | std::ios::trunc) {}

OutputFile& OutputFile::operator<<(std::string_view text) {
  stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
  return *this;
}

OutputFile& OutputFile::operator<<(int64_t number) { return *this << std::to_string(number); }

OutputFile& OutputFile::Field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return *this << text;
  *this << "\"";
  for (char letter : text) *this << (letter == '"' ? "\"\"" : std::string_view(&letter, 1));
  return *this << "\"";
}

void OutputFile::Close() {
  stream_.close();
  if (!stream_) {
    throw std::runtime_error("cannot write " + path_.string() + ": folder missing or disk full?");
  }
}

std::string LedgerName(int ledger) {
  if (ledger == 0) return "Domestic";
  return ledger == 1 ? "Export" : "Branch " + std::to_string(ledger + 1);
}

std::string MoneySetName(int money) {
  constexpr std::array<std::string_view, 8> kCodes = {"NIS", "USD", "EUR", "GBP",
                                                      "CHF", "SEK", "PLN", "JPY"};
  if (money < static_cast<int>(kCodes.size()))
    return std::string(kCodes[static_cast<size_t>(money)]);
  return "C" + Padded(money + 1, 2);
}

void WriteDimensions(const Plan& plan) {
  WriteDates(plan);
  WriteLines(plan);
  WriteFiles(plan);
  OutputFile opening(plan.output / "opening.csv");
  opening << "key,meaning\n0,Opening balance\n1,Movements\n";
  opening.Close();
  OutputFile money(plan.output / "money.csv");
  money << "money_id,code\n";
  for (int index = 0; index < plan.money_sets; ++index) {
    money << index + 1 << "," << MoneySetName(index) << "\n";
  }
  money.Close();
}

int64_t WriteEntries(const Plan& plan) {
  OutputFile file(plan.output / "entries.csv");
  file << "date_id,line_id,file_id,opening_key,money_id,amount,units\n";
  int64_t count = 0;
  Trade(plan, [&](const Entry& entry) {
    WriteEntry(&file, plan, entry);
    ++count;
  }).Run();
  file.Close();
  return count;
}

}  // namespace vok::examples
