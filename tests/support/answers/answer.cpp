#include "tests/support/answers/answer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <vector>

#include "platform/failure.h"

namespace vok::test {
namespace {

std::size_t CellCount(const Cellset& cellset) {
  std::size_t count = 1;
  for (std::size_t i = 0; i < cellset.AxisCount(); ++i) count *= cellset.PositionCount(i);
  return count;
}

/// Numbers have the same text only when they are equal.
std::string ShownCell(double number, CellState state, const std::string& text) {
  if (state == CellState::kEmpty) return "-";
  if (state == CellState::kError) return "error";
  if (state == CellState::kText) return '"' + text + '"';
  if (state == CellState::kLogical) return number != 0 ? "True" : "False";
  if (std::isnan(number)) return "nan";
  char digits[40];
  number += 0.0;  // -0 is 0
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

/// A line for each row. Cells are read in blocks of a column, as the run does, texts one by one.
std::vector<std::string> ShownRows(const Cellset& cellset, bool formats) {
  const std::size_t columns = cellset.AxisCount() == 0 ? 1 : cellset.PositionCount(0);
  std::vector<std::string> rows(columns == 0 ? 0 : CellCount(cellset) / columns);
  std::vector<double> numbers(rows.size());
  std::vector<CellState> states(rows.size());
  for (std::size_t column = 0; column < columns; ++column) {
    cellset.ReadCells(column, columns, numbers, states);
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const std::size_t ordinal = row * columns + column;
      const bool has_text = states[row] == CellState::kText;
      rows[row] += (column == 0 ? "" : " | ") +
                   ShownCell(numbers[row], states[row], has_text ? cellset.CellText(ordinal) : "");
      if (!formats || states[row] == CellState::kError) continue;
      const std::string formatted = cellset.FormattedCell(ordinal);
      if (!formatted.empty()) rows[row] += " as " + formatted;
    }
  }
  return rows;
}

std::string ShownPosition(const Cellset& cellset, std::size_t axis, std::size_t position) {
  std::string line;
  for (std::size_t i = 0; i < cellset.MembersPerPosition(axis); ++i) {
    const AxisMember member = cellset.Member(axis, position, i);
    line += (i == 0 ? "" : " | ") + member.unique_name + " \"" + member.caption + "\" " +
            member.level_name;
  }
  return line + '\n';
}

bool HasError(const Answer& answer) {
  if (!answer.failure.empty()) return true;
  for (std::size_t i = 0; i < CellCount(*answer.cellset); ++i) {
    if (answer.cellset->Cell(i).Is<CellError>()) return true;
  }
  return false;
}

/// Takes the word off the beginning of the line.
bool Follows(std::string& line, const std::string& word) {
  if (!line.starts_with(word)) return false;
  line.erase(0, word.size());
  return true;
}

void ReadFile(const std::filesystem::path& path, std::vector<Case>& cases) {
  std::ifstream in(path);
  std::string catalog;
  const std::size_t first = cases.size();
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('#')) continue;
    if (Follows(line, "catalog ")) {
      catalog = line;
    } else if (Follows(line, "case ")) {
      cases.push_back({path.stem().string() + '/' + line, catalog, "", "", ""});
    } else if (cases.size() == first) {
      throw std::runtime_error(path.string() + " does not begin with a case");
    } else if (Follows(line, "differs: ")) {
      cases.back().reason = line;
    } else {
      cases.back().query += line + '\n';
    }
  }
}

}  // namespace

void Side::Open(const std::string& catalog, const std::string& connection_string) {
  catalogs_[catalog] = provider_.Connect("Provider=MSOLAP;" + connection_string, nullptr);
}

Answer Side::Ask(const std::string& catalog, const std::string& mdx) const {
  try {
    return {"", catalogs_.at(catalog)->Execute(mdx)};
  } catch (const Failure& failure) {
    if (failure.number() != failure_number::kSyntax) throw;
    return {failure.description(), nullptr};
  }
}

std::string Shown(const Answer& answer, bool formats) {
  if (!answer.failure.empty()) return "failure: " + answer.failure + '\n';
  const Cellset& cellset = *answer.cellset;
  std::string text;
  for (std::size_t axis = 0; axis < cellset.AxisCount(); ++axis) {
    text += "axis " + std::to_string(axis) + '\n';
    for (std::size_t position = 0; position < cellset.PositionCount(axis); ++position) {
      text += ShownPosition(cellset, axis, position);
    }
  }
  text += "cells\n";
  for (const std::string& row : ShownRows(cellset, formats)) text += row + '\n';
  return text;
}

std::string Difference(const Answer& server, const Answer& ours, bool formats) {
  const bool one_fails = !server.failure.empty() || !ours.failure.empty();
  if (one_fails && HasError(server) && HasError(ours)) return "";
  const std::string theirs = Shown(server, formats), own = Shown(ours, formats);
  if (theirs == own) return "";
  const auto same = std::mismatch(theirs.begin(), theirs.end(), own.begin(), own.end()).first;
  const auto place = static_cast<std::size_t>(same - theirs.begin());
  const auto line = [place](const std::string& text) {
    const std::size_t begin = text.substr(0, place).rfind('\n') + 1;
    return text.substr(begin, text.find('\n', place) - begin);
  };
  return "  server: " + line(theirs) + "\n  ours:   " + line(own);
}

std::vector<Case> ReadCases(const std::string& folder) {
  std::map<std::string, std::string> answers;
  std::ifstream in(folder + "/cases.answers");
  std::string* answer = nullptr;
  for (std::string line; std::getline(in, line);) {
    if (Follows(line, "case ")) {
      answer = &answers[line];
    } else {
      *answer += line + '\n';
    }
  }
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".mdx") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Case> cases;
  for (const auto& path : paths) ReadFile(path, cases);
  for (Case& each : cases) {
    if (each.query.empty()) throw std::runtime_error(each.name + " has no query");
    each.answer = std::move(answers[each.name]);
  }
  return cases;
}

}  // namespace vok::test
