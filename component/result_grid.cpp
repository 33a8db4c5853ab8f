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
  grid.At(row, start) = "0";
  for (const std::size_t column : kPieceColumns) {
    const std::size_t tab = caption.find('\t');
    grid.At(row, start + column) = std::string(caption.substr(0, tab));
    if (tab == std::string_view::npos) break;
    caption.remove_prefix(tab + 1);
  }
}

/// Writes the rows of the answer into rows of the grid, block by block: so many that what is
/// written of them is still at hand when the next column comes.
class RowWriter {
 public:
  RowWriter(const Cellset& cellset, const std::vector<std::size_t>& column_map, CellBlock& grid)
      : cellset_(cellset), column_map_(column_map), grid_(grid) {}

  /// All `count` positions, from the grid's row `row` on.
  void Write(std::size_t count, std::size_t row) {
    for (std::size_t first = 0; first < count; first += kBlock) {
      const std::size_t size = std::min(kBlock, count - first);
      WriteHeaders(first, size, row + first);
      WriteCells(first, size, row + first);
    }
  }

 private:
  static constexpr std::size_t kBlock = 128;

  void WriteHeaders(std::size_t first, std::size_t count, std::size_t row) {
    std::array<std::string_view, kBlock> captions;
    const std::size_t members = cellset_.MembersPerPosition(kRows);
    for (std::size_t member = 0; member < members; ++member) {
      cellset_.ReadCaptions(kRows, member, first, {captions.data(), count});
      for (std::size_t i = 0; i < count; ++i) {
        WriteCaption(captions[i], row + i, member + 1, grid_);
      }
    }
  }

  void WriteCells(std::size_t first, std::size_t count, std::size_t row) {
    std::array<double, kBlock> numbers;
    std::array<CellState, kBlock> states;
    const std::size_t columns = column_map_.size();
    for (std::size_t column = 0; column < columns; ++column) {
      cellset_.ReadCells(first * columns + column, columns, {numbers.data(), count},
                         {states.data(), count});
      for (std::size_t i = 0; i < count; ++i) {
        grid_.At(row + i, column_map_[column]) = SheetValue(states[i], numbers[i]);
      }
    }
  }

  const Cellset& cellset_;
  const std::vector<std::size_t>& column_map_;
  CellBlock& grid_;
};

}  // namespace

Value SheetValue(CellState state, double number) {
  const bool numeric = state == CellState::kNumber || state == CellState::kInteger;
  if (!numeric || number == 0 || !std::isfinite(number)) return "";
  return number;
}

CellBlock BuildResultGrid(const Cellset& cellset, const std::vector<QueryPeriod>& periods,
                          bool append) {
  if (cellset.AxisCount() >= 3) {
    throw Failure(failure_number::kNotSupported,
                  "Cellsets with more than two axes are not supported by the Pleipi.");
  }
  const std::vector<std::size_t> column_map = ColumnMap(cellset, periods);
  const std::size_t rows = cellset.PositionCount(kRows);
  const std::size_t label_rows = append ? 0 : kLabelRows;
  CellBlock grid(label_rows + rows,
                 QuantityColumn(HighestPeriod(periods)) + cellset.MembersPerPosition(kRows));
  RowWriter(cellset, column_map, grid).Write(rows, label_rows + 1);
  return grid;
}

}  // namespace vok
