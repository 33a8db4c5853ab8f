#include "tests/interop/answer.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/failure.h"

namespace vok::interop {
namespace {

std::size_t CellCount(const Cellset& cellset) {
  std::size_t count = 1;
  for (std::size_t i = 0; i < cellset.AxisCount(); ++i) count *= cellset.PositionCount(i);
  return count;
}

/// Numbers have the same text only when they are equal.
std::string ShownCell(const Value& cell) {
  if (cell.IsEmpty()) return "-";
  if (cell.Is<CellError>()) return "error";
  if (cell.Is<std::string>()) return '"' + cell.ToText() + '"';
  const auto* number = cell.As<double>();
  if (number == nullptr) return cell.ToText();
  return std::isnan(*number) ? "nan" : Value(*number + 0.0).ToText();  // -0 is 0
}

std::vector<std::string> AxisLines(const Cellset& cellset, std::size_t axis) {
  const std::string place = "axis " + std::to_string(axis);
  std::vector<std::string> lines;
  for (std::size_t position = 0; position < cellset.PositionCount(axis); ++position) {
    std::string line = place + ", position " + std::to_string(position) + ':';
    for (std::size_t i = 0; i < cellset.MembersPerPosition(axis); ++i) {
      const AxisMember member = cellset.Member(axis, position, i);
      line += (i == 0 ? " " : " | ") + member.unique_name + ", caption \"" + member.caption +
              "\", level " + member.level_name;
    }
    lines.push_back(line);
  }
  lines.push_back(place + " has " + std::to_string(lines.size()) + " positions");
  return lines;
}

/// All that is compared, a line for each position and cell.
std::vector<std::string> Lines(const Cellset& cellset, bool formats) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < cellset.AxisCount(); ++i) {
    const auto axis = AxisLines(cellset, i);
    lines.insert(lines.end(), axis.begin(), axis.end());
  }
  lines.push_back(std::to_string(cellset.AxisCount()) + " axes");
  for (std::size_t i = 0; i < CellCount(cellset); ++i) {
    const Value cell = cellset.Cell(i);
    lines.push_back("cell " + std::to_string(i) + ": " + ShownCell(cell));
    if (formats && !cell.Is<CellError>()) {
      lines.push_back("cell " + std::to_string(i) + " in its format: " + cellset.FormattedCell(i));
    }
  }
  return lines;
}

bool HasError(const Answer& answer) {
  if (!answer.failure.empty()) return true;
  for (std::size_t i = 0; i < CellCount(*answer.cellset); ++i) {
    if (answer.cellset->Cell(i).Is<CellError>()) return true;
  }
  return false;
}

std::string Told(const std::string& server, const std::string& ours) {
  return "  server: " + server + "\n  ours:   " + ours;
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

std::string Difference(const Answer& server, const Answer& ours, bool formats) {
  if (!server.failure.empty() || !ours.failure.empty()) {
    return HasError(server) && HasError(ours) ? "" : Told(Shown(server), Shown(ours));
  }
  const auto server_lines = Lines(*server.cellset, formats);
  const auto our_lines = Lines(*ours.cellset, formats);
  const auto [theirs, own] =
      std::mismatch(server_lines.begin(), server_lines.end(), our_lines.begin(), our_lines.end());
  if (theirs == server_lines.end() && own == our_lines.end()) return "";
  return Told(theirs == server_lines.end() ? "no more" : *theirs,
              own == our_lines.end() ? "no more" : *own);
}

std::string Shown(const Answer& answer) {
  if (!answer.failure.empty()) return "failure: " + answer.failure + '\n';
  const Cellset& cellset = *answer.cellset;
  std::string text;
  for (std::size_t i = 0; i < cellset.AxisCount(); ++i) {
    text += "axis " + std::to_string(i) + ':';
    for (std::size_t position = 0; position < cellset.PositionCount(i); ++position) {
      for (std::size_t member = 0; member < cellset.MembersPerPosition(i); ++member) {
        text += (member == 0 ? " " : " | ") + cellset.Member(i, position, member).unique_name;
      }
      text += ';';
    }
    text += '\n';
  }
  const std::size_t columns = cellset.AxisCount() == 0 ? 1 : cellset.PositionCount(0);
  for (std::size_t i = 0; i < CellCount(cellset); ++i) {
    text += (i % columns == 0 ? "cells: " : " | ") + ShownCell(cellset.Cell(i));
    if ((i + 1) % columns == 0) text += '\n';
  }
  return text;
}

}  // namespace vok::interop
