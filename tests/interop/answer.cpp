#include "tests/interop/answer.h"

#include <algorithm>
#include <cmath>

namespace vok::interop {
namespace {

bool SameCell(const Value& a, const Value& b) {
  if (a.Is<CellError>() && b.Is<CellError>()) return true;
  const auto* first = a.As<double>();
  const auto* second = b.As<double>();
  if (first != nullptr && second != nullptr && std::isnan(*first)) return std::isnan(*second);
  return a == b;
}

std::string ShownCell(const Value& cell) {
  if (cell.IsEmpty()) return "-";
  if (cell.Is<CellError>()) return "error";
  if (cell.Is<std::string>()) return '"' + cell.ToText() + '"';
  const auto* number = cell.As<double>();
  if (number != nullptr && std::isnan(*number)) return "nan";
  if (number != nullptr && std::isinf(*number)) return *number < 0 ? "-inf" : "inf";
  return cell.ToText();
}

std::string ShownTuple(const Tuple& tuple) {
  std::string text;
  for (const Member& member : tuple) text += (text.empty() ? "" : " | ") + member.unique_name;
  return text;
}

std::string Told(const std::string& what, const std::string& server, const std::string& ours) {
  return what + "\n  server: " + server + "\n  ours:   " + ours;
}

std::string ShownMember(const Member& member) {
  return member.unique_name + ", caption \"" + member.caption + "\", level " + member.level;
}

std::string TupleDifference(const std::string& place, const Tuple& server, const Tuple& ours) {
  if (server.size() != ours.size()) return Told(place, ShownTuple(server), ShownTuple(ours));
  for (std::size_t i = 0; i < server.size(); ++i) {
    if (server[i] != ours[i]) return Told(place, ShownMember(server[i]), ShownMember(ours[i]));
  }
  return {};
}

std::string AxisDifference(std::size_t axis, const std::vector<Tuple>& server,
                           const std::vector<Tuple>& ours) {
  const std::string place = "axis " + std::to_string(axis);
  for (std::size_t i = 0; i < std::min(server.size(), ours.size()); ++i) {
    const auto difference =
        TupleDifference(place + ", position " + std::to_string(i), server[i], ours[i]);
    if (!difference.empty()) return difference;
  }
  if (server.size() == ours.size()) return {};
  return Told(place + " has another length", std::to_string(server.size()),
              std::to_string(ours.size()));
}

std::string CellDifference(const Answer& server, const Answer& ours, bool formats) {
  for (std::size_t i = 0; i < server.cells.size(); ++i) {
    const std::string place = "cell " + std::to_string(i);
    if (!SameCell(server.cells[i], ours.cells[i])) {
      return Told(place, ShownCell(server.cells[i]), ShownCell(ours.cells[i]));
    }
    if (formats && !server.cells[i].Is<CellError>() && server.formatted[i] != ours.formatted[i]) {
      return Told(place + " in its format", server.formatted[i], ours.formatted[i]);
    }
  }
  return {};
}

bool HasError(const Answer& answer) {
  return !answer.failure.empty() || std::any_of(answer.cells.begin(), answer.cells.end(),
                                                [](const Value& v) { return v.Is<CellError>(); });
}

}  // namespace

void Answer::SizeCells() {
  std::size_t count = 1;
  for (const auto& axis : axes) count *= axis.size();
  cells.resize(count);
  formatted.resize(count);
}

std::string Difference(const Answer& server, const Answer& ours, bool formats) {
  const bool one_fails = !server.failure.empty() || !ours.failure.empty();
  if (one_fails && HasError(server) && HasError(ours)) return {};
  if (!server.failure.empty()) return Told("the server fails", server.failure, Shown(ours));
  if (!ours.failure.empty()) return Told("we fail", Shown(server), ours.failure);
  if (server.axes.size() != ours.axes.size()) {
    return Told("number of axes", std::to_string(server.axes.size()),
                std::to_string(ours.axes.size()));
  }
  for (std::size_t i = 0; i < server.axes.size(); ++i) {
    const auto difference = AxisDifference(i, server.axes[i], ours.axes[i]);
    if (!difference.empty()) return difference;
  }
  return CellDifference(server, ours, formats);
}

std::string Shown(const Answer& answer) {
  if (!answer.failure.empty()) return "failure: " + answer.failure + '\n';
  std::string text;
  for (std::size_t i = 0; i < answer.axes.size(); ++i) {
    text += "axis " + std::to_string(i) + ':';
    for (const Tuple& tuple : answer.axes[i]) text += ' ' + ShownTuple(tuple) + ';';
    text += '\n';
  }
  const std::size_t columns = answer.axes.empty() ? 1 : answer.axes[0].size();
  for (std::size_t i = 0; i < answer.cells.size(); ++i) {
    text += (i % columns == 0 ? "cells: " : " | ") + ShownCell(answer.cells[i]);
    if ((i + 1) % columns == 0) text += '\n';
  }
  return text;
}

}  // namespace vok::interop
