#include "tests/end_to_end/csv.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vok::end_to_end {

std::vector<Row> ReadCsv(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path.string());
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!text.empty() && text.back() != '\n') text += '\n';

  std::vector<Row> rows;
  Row row(1);
  bool inside = false;
  for (size_t i = 0; i < text.size(); ++i) {
    char letter = text[i];
    if (letter == '"' && inside && text[i + 1] == '"') {
      row.back().text += text[++i];
    } else if (letter == '"') {
      inside = !inside;
      row.back().quoted = true;
    } else if (letter == ',' && !inside) {
      row.emplace_back();
    } else if (letter == '\n' && !inside) {
      rows.push_back(std::move(row));
      row = Row(1);
    } else if (letter != '\r' || inside) {
      row.back().text += letter;
    }
  }
  return rows;
}

Field Text(std::string text) { return {std::move(text), true}; }

std::string FormatRow(const Row& row) {
  std::string line;
  for (const Field& field : row) {
    if (&field != &row.front()) line += ',';
    if (!field.quoted) {
      line += field.text;
      continue;
    }
    line += '"';
    for (char letter : field.text) line.append(letter == '"' ? 2 : 1, letter);
    line += '"';
  }
  return line + '\n';
}

}  // namespace vok::end_to_end
