#include "platform/cube.h"

#include "platform/failure.h"

namespace vok {

Value Cellset::Cell(std::size_t ordinal) const {
  double number = 0;
  CellState state = CellState::kEmpty;
  ReadCells(ordinal, 1, {&number, 1}, {&state, 1});
  switch (state) {
    case CellState::kEmpty:
      return {};
    case CellState::kNumber:
      return number;
    case CellState::kInteger:
      return static_cast<int32_t>(number);
    case CellState::kLogical:
      return number != 0;
    case CellState::kText:
      return CellText(ordinal);
    case CellState::kError:
      return CellError{CellText(ordinal)};
  }
  return {};
}

void CheckCubeIndex(std::size_t index, std::size_t count, const std::string& what) {
  if (index < count) return;
  throw Failure(failure_number::kItemNotFound, what + " number " + std::to_string(index) +
                                                   " was asked for; there are " +
                                                   std::to_string(count) + ", counted from 0.");
}

}  // namespace vok

namespace vok::cube_text {
namespace {

/// Where the bracketed part that begins at `open` ends: after its "]". npos without one.
std::size_t EndOfPart(std::string_view name, std::size_t open) {
  for (std::size_t i = open + 1; i < name.size(); ++i) {
    if (name[i] != ']') continue;
    if (i + 1 == name.size() || name[i + 1] != ']') return i + 1;
    ++i;
  }
  return std::string_view::npos;
}

std::string Unescaped(std::string_view part) {
  std::string text;
  text.reserve(part.size());
  for (std::size_t i = 0; i < part.size(); ++i) {
    text += part[i];
    if (part[i] == ']') ++i;
  }
  return text;
}

}  // namespace

std::string LastPart(std::string_view unique_name, std::string_view otherwise) {
  std::size_t open = unique_name.find('[');
  while (open != std::string_view::npos) {
    const std::size_t end = EndOfPart(unique_name, open);
    if (end == unique_name.size()) {
      const bool key = open > 0 && unique_name[open - 1] == '&';
      if (key) break;
      return Unescaped(unique_name.substr(open + 1, end - open - 2));
    }
    open = end == std::string_view::npos ? end : unique_name.find('[', end);
  }
  return std::string(otherwise);
}

}  // namespace vok::cube_text
