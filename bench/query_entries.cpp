#include "bench/query_entries.h"

#include <charconv>
#include <fstream>
#include <map>
#include <string_view>

namespace vok::bench {
namespace {

/// "12.5" as 1250 when `decimals` is 2.
std::optional<int64_t> Scaled(std::string_view text, std::size_t decimals) {
  if (text.empty()) return std::nullopt;
  std::string digits(text);
  const auto point = digits.find('.');
  const std::size_t present = point == std::string::npos ? 0 : digits.size() - point - 1;
  if (point != std::string::npos) digits.erase(point, 1);
  digits.append(decimals - present, '0');
  int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::string_view NextField(std::string_view& rest) {
  const auto comma = rest.find(',');
  const std::string_view field = rest.substr(0, comma);
  rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  return field;
}

std::map<int64_t, int64_t> LedgersOfFiles(const std::string& folder) {
  std::ifstream file(folder + "/files.csv");
  std::map<int64_t, int64_t> ledgers;
  std::map<std::string, int64_t, std::less<>> numbers;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::string_view rest = line;
    const int64_t id = *Scaled(NextField(rest), 0);
    const std::string name(NextField(rest));
    ledgers[id] = numbers.emplace(name, numbers.size() + 1).first->second;
  }
  return ledgers;
}

}  // namespace

void ReadEntries(const std::string& folder, const std::function<void(const Entry&)>& use) {
  const auto ledgers = LedgersOfFiles(folder);
  std::ifstream file(folder + "/entries.csv");
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::string_view rest = line;
    Entry entry;
    for (int64_t Entry::*key :
         {&Entry::date, &Entry::line, &Entry::file, &Entry::opening, &Entry::money}) {
      entry.*key = *Scaled(NextField(rest), 0);
    }
    entry.cents = Scaled(NextField(rest), 2);
    entry.units = Scaled(NextField(rest), 0);
    entry.ledger = ledgers.at(entry.file);
    use(entry);
  }
}

}  // namespace vok::bench
