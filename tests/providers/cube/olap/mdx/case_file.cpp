#include "tests/providers/cube/olap/mdx/case_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>

namespace vok::test {
namespace {

void ReadFile(const std::filesystem::path& path, std::vector<MdxCase>& cases) {
  std::ifstream file(path, std::ios::binary);
  std::string line;
  bool in_query = false;
  while (std::getline(file, line)) {
    if (line.starts_with('#') || line.empty()) continue;
    if (line.starts_with("case ")) {
      cases.push_back({path.stem().string(), line.substr(5), "", ""});
      in_query = false;
    } else if (line == "query") {
      in_query = true;
    } else if (line.starts_with("axis ") || line == "cells" || line == "formatted" ||
               line == "failure") {
      in_query = false;
      cases.back().expected += line + "\n";
    } else {
      std::string& text = in_query ? cases.back().query : cases.back().expected;
      if (in_query && !text.empty()) text += "\r\n";
      text += in_query ? line : line + "\n";
    }
  }
}

std::string Number(double number) {
  char buffer[40];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

std::string CellText(const olap::MdxResult& result, std::size_t ordinal, bool formatted) {
  const Value value = result.Cell(ordinal);
  if (value.IsEmpty()) return "-";
  if (formatted) return result.FormattedCell(ordinal);
  if (const auto* text = value.As<std::string>()) return '"' + *text + '"';
  return Number(*value.As<double>());
}

}  // namespace

std::vector<MdxCase> ReadCases(const std::string& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".mdx-test") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<MdxCase> cases;
  for (const auto& path : paths) ReadFile(path, cases);
  return cases;
}

std::string Shown(const olap::MdxResult& result, bool formatted) {
  std::string text;
  for (std::size_t axis = 0; axis < result.axes().size(); ++axis) {
    text += "axis " + std::to_string(axis) + "\n";
    const auto& tuples = result.axes()[axis];
    for (std::size_t position = 0; position < tuples.size(); ++position) {
      for (std::size_t i = 0; i < tuples.arity(); ++i) {
        text += (i > 0 ? " | " : "") + result.Member(axis, position, i).unique_name;
      }
      text += "\n";
    }
  }
  text += formatted ? "formatted\n" : "cells\n";
  const std::size_t width = result.axes().empty() ? 1 : result.PositionCount(0);
  for (std::size_t ordinal = 0; ordinal < result.CellCount(); ++ordinal) {
    text += CellText(result, ordinal, formatted);
    text += (ordinal + 1) % width == 0 ? "\n" : " | ";
  }
  return text;
}

}  // namespace vok::test
