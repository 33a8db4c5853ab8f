#include "component/result_grid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr std::size_t kColumns = 0;
constexpr std::size_t kRows = 1;

// Where the pieces of a caption go, counted from the column that the member starts in.
constexpr std::array<std::size_t, 10> kPieceColumns{1, 2, 9, 10, 3, 7, 8, 4, 5, 6};

/// The sheet column of the query's member `name`: Qk is the quantity and mk the money of entry k.
std::size_t ColumnOf(std::string_view name, const std::vector<QueryPeriod>& periods) {
  const bool quantity = name.starts_with('Q') || name.starts_with('q');
  const bool money = name.starts_with('M') || name.starts_with('m');
  std::size_t k = 0;
  const char* end = name.data() + name.size();
  if (quantity || money) {
    const auto result = std::from_chars(name.data() + 1, end, k);
    if (result.ec == std::errc{} && result.ptr == end && k < periods.size()) {
      return QuantityColumn(periods[k].PeriodNumber) + (money ? 1 : 0);
    }
  }
  throw Failure(failure_number::kSubscript,
                "Subscript out of range: the cube's answer has a column \"" + std::string(name) +
                    "\" that the query did not ask for");
}

std::vector<std::size_t> ColumnMap(const Cellset& cellset,
                                   const std::vector<QueryPeriod>& periods) {
  std::vector<std::size_t> map(cellset.PositionCount(kColumns));
  for (std::size_t position = 0; position < map.size(); ++position) {
    map[position] = ColumnOf(cellset.Member(kColumns, position, 0).name, periods);
  }
  return map;
}

int16_t HighestPeriod(const std::vector<QueryPeriod>& periods) {
  int16_t highest = 0;
  for (const QueryPeriod& period : periods) highest = std::max(highest, period.PeriodNumber);
  return highest;
}

/// The pieces of a caption, in columns from `start` on.
void WriteCaption(std::string_view caption, std::size_t row, std::size_t start, CellBlock& grid) {
  grid.SetText(row, start, "0");
  for (const std::size_t column : kPieceColumns) {
    const std::size_t tab = caption.find('\t');
    grid.SetText(row, start + column, caption.substr(0, tab));
    if (tab == std::string_view::npos) break;
    caption.remove_prefix(tab + 1);
  }
}

/// Writes positions of the answer, from `first` on, into the last `count` rows of the grid.
class RowWriter {
 public:
  RowWriter(const Cellset& cellset, std::size_t first, std::size_t count, CellBlock& grid)
      : cellset_(cellset), first_(first), count_(count), grid_(grid) {}

  void WriteHeaders() {
    std::vector<std::string_view> captions(count_);
    const std::size_t members = cellset_.MembersPerPosition(kRows);
    for (std::size_t member = 0; member < members; ++member) {
      cellset_.ReadCaptions(kRows, member, first_, captions);
      for (std::size_t i = 0; i < count_; ++i) {
        WriteCaption(captions[i], RowOf(i), member + 1, grid_);
      }
    }
  }

  void WriteCells(const std::vector<std::size_t>& column_map) {
    std::vector<double> numbers(count_);
    std::vector<CellState> states(count_);
    const std::size_t columns = column_map.size();
    for (std::size_t column = 0; column < columns; ++column) {
      cellset_.ReadCells(first_ * columns + column, columns, numbers, states);
      for (std::size_t i = 0; i < count_; ++i) {
        if (IsShown(states[i], numbers[i])) {
          grid_.SetNumber(RowOf(i), column_map[column], numbers[i]);
        } else {
          grid_.SetText(RowOf(i), column_map[column], "");
        }
      }
    }
  }

 private:
  std::size_t RowOf(std::size_t i) const { return grid_.rows() - count_ + i + 1; }

  const Cellset& cellset_;
  std::size_t first_;
  std::size_t count_;
  CellBlock& grid_;
};

}  // namespace

bool IsShown(CellState state, double number) {
  const bool numeric = state == CellState::kNumber || state == CellState::kInteger;
  return numeric && number != 0 && std::isfinite(number);
}

ResultGrid::ResultGrid(const Cellset& cellset, const std::vector<QueryPeriod>& periods, bool append)
    : cellset_(cellset), label_rows_(append ? 0 : kLabelRows) {
  if (cellset.AxisCount() >= 3) {
    throw Failure(failure_number::kNotSupported,
                  "Cellsets with more than two axes are not supported by the Pleipi.");
  }
  column_map_ = ColumnMap(cellset, periods);
  columns_ = QuantityColumn(HighestPeriod(periods)) + cellset.MembersPerPosition(kRows);
}

CellBlock ResultGrid::Next(std::size_t most) {
  const std::size_t labels = std::min(label_rows_, most);
  const std::size_t count = std::min(most - labels, cellset_.PositionCount(kRows) - position_);
  CellBlock grid(labels + count, columns_);
  RowWriter writer(cellset_, position_, count, grid);
  writer.WriteHeaders();
  writer.WriteCells(column_map_);
  label_rows_ -= labels;
  position_ += count;
  return grid;
}

}  // namespace vok
