#include "tests/end_to_end/expected_sheet.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace vok::end_to_end {
namespace {

constexpr size_t kHeaderColumns = 11;
constexpr size_t kColumns = kHeaderColumns + 2 * kPeriods;

/// Where the ten fields of a caption stand, as column letters.
constexpr std::string_view kFieldColumns = "BCJKDHIEFG";

struct Span {
  Date first, last;
};

/// A sum that remembers whether anything was added.
struct Sum {
  Exact value = 0;
  bool filled = false;
  void Add(const std::optional<Exact>& amount) {
    if (!amount) return;
    value += *amount;
    filled = true;
  }
};

struct LineSums {
  std::array<Sum, kPeriods> quantity, money;
};

Date ParseDate(const std::string& text) {
  if (text.empty()) return kNoDate;
  int year = std::stoi(text.substr(0, 4)), month = std::stoi(text.substr(5, 2));
  return std::chrono::year{year} / month / std::stoi(text.substr(8, 2));
}

const nlohmann::json& Named(const nlohmann::json& list, const std::string& name) {
  for (const auto& entry : list) {
    if (entry.at("SetName") == name) return entry;
  }
  throw std::runtime_error("the settings have no set " + name);
}

/// The cube's dates that a period covers; a period between two dates stands on the later one.
Span Cover(const std::vector<Date>& dates, Date from, Date until) {
  if (dates.size() == 1) return {dates[0], dates[0]};
  // A period that ends before it begins stands on the first date after its end.
  auto first = until < from ? std::upper_bound(dates.begin(), dates.end(), until)
                            : std::lower_bound(dates.begin(), dates.end(), from);
  if (first == dates.end() || (until < from && *first == from))
    throw NoDate("a period meets no date of the cube");
  auto last = std::upper_bound(first, dates.end(), until);
  return {*first, last == first ? *first : *(last - 1)};
}

/// The periods that a pass asks for, by their index, with what they cover.
std::map<size_t, Span> Taken(const DataSet& data, const Report& report, bool opening_pass) {
  Date first = data.dates.front(), last = data.dates.back();
  std::map<size_t, Span> taken;
  for (size_t k = 0; k < kPeriods; ++k) {
    const Period& period = report.periods[k];
    Date from = period.from, until = period.until;
    if (opening_pass) {
      if (!period.opening_balance || from > last || from < first) continue;
      if (until == kNoDate) until = from;
    } else {
      if (until == kNoDate || until < first || from > last) continue;
    }
    until = std::min(until, last);
    taken[k] = Cover(data.dates, from, until);
  }
  return taken;
}

std::vector<LineSums> SumLines(const DataSet& data, const Report& report,
                               const std::map<size_t, Span>& taken, const std::string& key) {
  std::vector<LineSums> sums(data.captions.size());
  for (const Fact& fact : data.facts) {
    if (fact.ledger != report.ledger || fact.opening_key != key) continue;
    for (const auto& [k, span] : taken) {
      if (fact.date < span.first || fact.date > span.last) continue;
      const Period& period = report.periods[k];
      sums[fact.line].money[k].Add(fact.measures.at(period.measure));
      if (!period.quantity.empty())
        sums[fact.line].quantity[k].Add(fact.measures.at(period.quantity));
    }
  }
  return sums;
}

Field NumberCell(const Sum& sum) {
  if (sum.value == 0) return {};
  char buffer[32];
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, ToDouble(sum.value));
  return {std::string(buffer, end), false};
}

void PutCaption(const std::string& caption, Row* row) {
  (*row)[0] = Text("0");
  size_t start = 0;
  for (char column : kFieldColumns) {
    size_t end = std::min(caption.find('\t', start), caption.size());
    if (std::string field = caption.substr(start, end - start); !field.empty())
      (*row)[static_cast<size_t>(column - 'A')] = Text(field);
    if (end == caption.size()) return;
    start = end + 1;
  }
}

void AppendPass(const DataSet& data, const Report& report, bool opening_pass,
                const std::string& key, std::vector<Row>* sheet) {
  std::vector<LineSums> sums = SumLines(data, report, Taken(data, report, opening_pass), key);
  for (size_t line = 0; line < sums.size(); ++line) {
    auto filled = [](const Sum& sum) { return sum.filled; };
    if (std::ranges::none_of(sums[line].money, filled) &&
        std::ranges::none_of(sums[line].quantity, filled))
      continue;
    Row row(kColumns);
    PutCaption(data.captions[line], &row);
    for (size_t k = 0; k < kPeriods; ++k) {
      row[kHeaderColumns + 2 * k] = NumberCell(sums[line].quantity[k]);
      row[kHeaderColumns + 2 * k + 1] = NumberCell(sums[line].money[k]);
    }
    sheet->push_back(std::move(row));
  }
}

Row Labels(const Report& report) {
  Row row(kColumns);
  for (size_t k = 0; k < kPeriods; ++k) {
    std::string label = std::to_string(k + 1) + ">" + report.periods[k].name;
    row[kHeaderColumns + 2 * k] = Text("Q" + label);
    row[kHeaderColumns + 2 * k + 1] = Text("M" + label);
  }
  return row;
}

}  // namespace

Report ReadReport(const std::filesystem::path& settings, const std::string& data_source,
                  const std::string& period_set) {
  std::ifstream stream(settings);
  nlohmann::json document = nlohmann::json::parse(stream);
  const auto& source = Named(document.at("dataSources"), data_source);
  const auto& money = source.at("MoneySets");
  const auto& periods = Named(document.at("periods"), period_set).at("Periods");

  Report report{source.at("CubeName"), source.at("OBS"), {}};
  for (size_t k = 0; k < kPeriods; ++k) {
    Period& period = report.periods[k];
    // The first money set serves no period; it only stands in for a measure that is not named.
    if (k + 1 < money.size()) {
      period.measure = money[k + 1].value("Measure", "");
      period.quantity = money[k + 1].value("Qty", "");
    }
    if (period.measure.empty()) period.measure = money.at(0).at("Measure");
    if (k >= periods.size()) continue;
    period.name = periods[k].value("PeriodName", "");
    period.from = ParseDate(periods[k].value("FromDate", ""));
    period.until = ParseDate(periods[k].value("UntillDate", ""));
    period.opening_balance = periods[k].value("includeOpenBalans", false);
  }
  return report;
}

std::vector<Row> ExpectedSheet(const DataSet& data, const Report& report) {
  std::vector<Row> sheet;
  AppendPass(data, report, false, data.has_opening_balance ? "1" : "", &sheet);
  if (data.has_opening_balance) AppendPass(data, report, true, "0", &sheet);
  if (!sheet.empty()) sheet.insert(sheet.begin(), Labels(report));
  return sheet;
}

}  // namespace vok::end_to_end
