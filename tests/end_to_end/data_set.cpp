#include "tests/end_to_end/data_set.h"

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>
#include <regex>
#include <set>
#include <stdexcept>
#include <tuple>

#include "tests/end_to_end/csv.h"

namespace vok::end_to_end {
namespace {

[[noreturn]] void Refuse(const std::string& what) { throw std::runtime_error(what); }

class Table {
 public:
  Table(const std::filesystem::path& folder, const std::string& name)
      : name_(name), rows_(ReadCsv(folder / (name + ".csv"))) {}

  size_t Size() const { return rows_.size() - 1; }
  const std::string& At(size_t row, size_t column) const { return rows_[row + 1].at(column).text; }
  size_t Column(const std::string& name) const {
    for (size_t i = 0; i < rows_[0].size(); ++i) {
      if (rows_[0][i].text == name) return i;
    }
    Refuse("table " + name_ + " has no column \"" + name + "\"");
  }

 private:
  std::string name_;
  std::vector<Row> rows_;
};

int Whole(const std::string& text) {
  int value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) Refuse("no number: " + text);
  return value;
}

/// A dimension of the schema with its table, and per key the row that it stands in.
struct Dimension {
  Dimension(const std::filesystem::path& folder, pugi::xml_node node)
      : hierarchy(node.child("Hierarchy")),
        foreign_key(node.attribute("foreignKey").value()),
        table(folder, hierarchy.child("Table").attribute("name").value()) {
    size_t key = table.Column(hierarchy.attribute("primaryKey").value());
    for (size_t row = 0; row < table.Size(); ++row) rows[table.At(row, key)] = row;
    for (pugi::xml_node level : hierarchy.children("Level")) levels.push_back(level);
  }

  size_t Column(size_t level, const char* attribute) const {
    return table.Column(levels.at(level).attribute(attribute).value());
  }
  size_t RowOf(const std::string& key) const {
    auto found = rows.find(key);
    if (found == rows.end()) Refuse("no row for key " + key + " of " + foreign_key);
    return found->second;
  }

  pugi::xml_node hierarchy;
  std::string foreign_key;
  Table table;
  std::map<std::string, size_t> rows;
  std::vector<pugi::xml_node> levels;
};

std::vector<Date> DatesOfRows(const Dimension& dates) {
  size_t year = dates.Column(0, "column"), month = dates.Column(2, "column");
  std::optional<size_t> day;
  if (dates.levels.size() > 3) day = dates.Column(3, "column");
  std::vector<Date> found;
  for (size_t row = 0; row < dates.table.Size(); ++row) {
    int of_month = day ? Whole(dates.table.At(row, *day)) : 1;
    found.push_back(std::chrono::year{Whole(dates.table.At(row, year))} /
                    Whole(dates.table.At(row, month)) / of_month);
  }
  return found;
}

/// Report lines in their order, and for each row of the table the line that it belongs to.
struct Lines {
  std::vector<std::string> captions;
  std::vector<size_t> line_of_row;
};

bool IsWhole(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

Lines OrderLines(const Dimension& lines) {
  if (lines.levels.size() != 1 ||
      std::string("false") != lines.hierarchy.attribute("hasAll").value())
    Refuse("only one level of report lines without an All member is understood");
  pugi::xml_node level = lines.levels[0];
  size_t key = lines.Column(0, "column");
  size_t caption = level.attribute("captionColumn") ? lines.Column(0, "captionColumn") : key;
  size_t order = level.attribute("ordinalColumn") ? lines.Column(0, "ordinalColumn") : key;
  const Table& table = lines.table;

  bool numbers = true;
  for (size_t row = 0; row < table.Size(); ++row) numbers &= IsWhole(table.At(row, order));
  std::set<std::tuple<int, std::string, std::string, std::string>> sorted;
  for (size_t row = 0; row < table.Size(); ++row) {
    const std::string& place = table.At(row, order);
    sorted.emplace(numbers ? Whole(place) : 0, numbers ? "" : place, table.At(row, key),
                   table.At(row, caption));
  }
  Lines result;
  std::map<std::string, size_t> line_of_key;
  for (const auto& [number, text, key_text, caption_text] : sorted) {
    line_of_key[key_text] = result.captions.size();
    result.captions.push_back(caption_text);
  }
  for (size_t row = 0; row < table.Size(); ++row)
    result.line_of_row.push_back(line_of_key.at(table.At(row, key)));
  return result;
}

/// A calculated measure: a stored one for the facts of one money set.
struct OfMoneySet {
  explicit OfMoneySet(pugi::xml_node node) {
    static const std::regex form(
        R"(\(\[Measures\]\.\[([^\]]+)\], \[MoneySet\]\.\[All\]\.\[([^\]]+)\]\))");
    const std::string formula = node.child_value("Formula");
    std::smatch parts;
    if (!std::regex_match(formula, parts, form)) Refuse("formula not understood: " + formula);
    measure = parts[1];
    money_set = parts[2];
  }
  std::string measure, money_set;
};

/// What of a cube is read: its dimensions, found by the names that reports use.
struct Cube {
  Cube(const std::filesystem::path& folder, pugi::xml_node node)
      : dates(folder, node.find_child_by_attribute("Dimension", "name", "Date")),
        lines(folder, node.find_child_by_attribute("Dimension", "name", "QeL")),
        ledgers(folder, node.find_child_by_attribute("Dimension", "name", "ActX")),
        money_sets(folder, node.find_child_by_attribute("Dimension", "name", "MoneySet")),
        facts(folder, node.child("Table").attribute("name").value()) {
    if (auto found = node.find_child_by_attribute("Dimension", "name", "Opening_Balance"))
      opening.emplace(folder, found);
    for (pugi::xml_node measure : node.children("Measure")) {
      if (std::string("sum") != measure.attribute("aggregator").value())
        Refuse("only sums are understood");
      measures[measure.attribute("name").value()] =
          facts.Column(measure.attribute("column").value());
    }
    for (pugi::xml_node member : node.children("CalculatedMember"))
      of_money_sets.emplace(member.attribute("name").value(), OfMoneySet(member));
  }

  Dimension dates, lines, ledgers, money_sets;
  Table facts;
  std::optional<Dimension> opening;
  std::map<std::string, size_t> measures;
  std::map<std::string, OfMoneySet> of_money_sets;
};

void ReadMeasures(const Cube& cube, size_t row, Fact* fact) {
  for (const auto& [name, column] : cube.measures)
    fact->measures[name] = ParseExact(cube.facts.At(row, column));
  size_t key = cube.facts.Column(cube.money_sets.foreign_key);
  size_t money_row = cube.money_sets.RowOf(cube.facts.At(row, key));
  const std::string& money_set =
      cube.money_sets.table.At(money_row, cube.money_sets.Column(0, "column"));
  for (const auto& [name, part] : cube.of_money_sets)
    fact->measures[name] =
        part.money_set == money_set ? fact->measures.at(part.measure) : std::nullopt;
}

void ReadFacts(const Cube& cube, DataSet* data) {
  std::vector<Date> dates = DatesOfRows(cube.dates);
  Lines lines = OrderLines(cube.lines);
  data->captions = lines.captions;
  size_t date = cube.facts.Column(cube.dates.foreign_key);
  size_t line = cube.facts.Column(cube.lines.foreign_key);
  size_t file = cube.facts.Column(cube.ledgers.foreign_key);
  size_t ledger = cube.ledgers.Column(0, "column");
  for (size_t row = 0; row < cube.facts.Size(); ++row) {
    Fact fact;
    fact.date = dates[cube.dates.RowOf(cube.facts.At(row, date))];
    fact.line = lines.line_of_row[cube.lines.RowOf(cube.facts.At(row, line))];
    size_t file_row = cube.ledgers.RowOf(cube.facts.At(row, file));
    fact.ledger = cube.ledgers.table.At(file_row, ledger);
    if (cube.opening) {
      size_t key = cube.facts.Column(cube.opening->foreign_key);
      size_t key_row = cube.opening->RowOf(cube.facts.At(row, key));
      fact.opening_key = cube.opening->table.At(key_row, cube.opening->Column(0, "column"));
    }
    ReadMeasures(cube, row, &fact);
    data->facts.push_back(std::move(fact));
  }
}

}  // namespace

std::optional<Exact> ParseExact(const std::string& text) {
  if (text.empty()) return std::nullopt;
  bool negative = text[0] == '-';
  std::string digits = text.substr(negative ? 1 : 0);
  size_t point = digits.find('.');
  size_t places = point == std::string::npos ? 0 : digits.size() - point - 1;
  if (point != std::string::npos) digits.erase(point, 1);
  if (!IsWhole(digits) || places > kDecimals || digits.size() > 30) Refuse("no amount: " + text);
  digits.append(kDecimals - places, '0');
  Exact value = 0;
  for (char digit : digits) value = value * 10 + (digit - '0');
  return negative ? -value : value;
}

double ToDouble(Exact millionths) {
  bool negative = millionths < 0;
  std::string digits;
  for (Exact rest = negative ? -millionths : millionths; rest != 0; rest /= 10)
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(rest % 10)));
  digits += "e-" + std::to_string(kDecimals);
  double value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return negative ? -value : value;
}

DataSet ReadDataSet(const std::filesystem::path& folder, const std::string& cube_name) {
  pugi::xml_document schema;
  if (!schema.load_file((folder / "schema.xml").c_str()))
    Refuse("no schema.xml in " + folder.string());
  pugi::xml_node node =
      schema.child("Schema").find_child_by_attribute("Cube", "name", cube_name.c_str());
  if (!node) Refuse("the schema has no cube " + cube_name);

  Cube cube(folder, node);
  DataSet data;
  data.has_opening_balance = cube.opening && cube.opening->table.Size() > 1;
  std::vector<Date> dates = DatesOfRows(cube.dates);
  std::set<Date> ordered(dates.begin(), dates.end());
  data.dates.assign(ordered.begin(), ordered.end());
  ReadFacts(cube, &data);
  return data;
}

}  // namespace vok::end_to_end
