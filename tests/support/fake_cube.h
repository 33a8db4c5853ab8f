// The answer of a cube, laid out by hand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/cube.h"

namespace vok::test {

/// A number, unless it is told otherwise.
struct FakeCell {
  FakeCell(double value, CellState kind = CellState::kNumber) : number(value), state(kind) {}
  FakeCell(CellState kind = CellState::kEmpty, const std::string& words = "")
      : state(kind), text(words) {}
  double number = 0;
  CellState state;
  std::string text;
};

/// The answer to a query: per axis the positions, each with its members; cells row by row.
struct FakeAnswer {
  std::vector<std::vector<std::vector<AxisMember>>> axes;
  std::vector<FakeCell> cells;
};

namespace fake_cube {

class AnswerCellset : public Cellset {
 public:
  explicit AnswerCellset(FakeAnswer answer) : answer_(std::move(answer)) {}
  std::size_t AxisCount() const override { return answer_.axes.size(); }
  std::size_t PositionCount(std::size_t axis) const override {
    return answer_.axes.at(axis).size();
  }
  std::size_t MembersPerPosition(std::size_t axis) const override {
    return PositionCount(axis) == 0 ? 0 : answer_.axes[axis][0].size();
  }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const override {
    return answer_.axes.at(axis).at(position).at(index);
  }
  void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                    std::span<std::string_view> captions) const override {
    for (std::size_t i = 0; i < captions.size(); ++i) {
      captions[i] = answer_.axes.at(axis).at(first + i).at(index).caption;
    }
  }
  void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                 std::span<CellState> states) const override {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      const FakeCell& cell = answer_.cells.at(first + i * step);
      numbers[i] = cell.number;
      states[i] = cell.state;
    }
  }
  std::string CellText(std::size_t ordinal) const override { return answer_.cells[ordinal].text; }
  std::string FormattedCell(std::size_t ordinal) const override { return Cell(ordinal).ToText(); }

 private:
  FakeAnswer answer_;
};

}  // namespace fake_cube
}  // namespace vok::test
