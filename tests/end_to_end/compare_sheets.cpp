// Compares two sheets cell by cell and says where they differ.
//
//   compare_sheets EXPECTED.csv ACTUAL.csv [DIGITS]
//
// Texts must be equal, numbers equal as doubles, or to DIGITS significant digits for a reader that
// shows no more. A number where a text should stand is a difference.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>

#include "tests/end_to_end/csv.h"

namespace vok::end_to_end {
namespace {

constexpr int kShown = 10;

double Number(const std::string& text) {
  double value = std::nan("");
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return end == text.data() + text.size() ? value : std::nan("");
}

bool SameCell(const Field& expected, const Field& actual, int digits) {
  if (expected.text.empty() && actual.text.empty()) return true;
  if (expected.quoted != actual.quoted) return false;
  if (expected.quoted) return expected.text == actual.text;
  double wanted = Number(expected.text), found = Number(actual.text);
  if (digits == 0) return wanted == found;
  return std::abs(wanted - found) <= std::abs(wanted) * std::pow(10.0, 1 - digits) / 2;
}

int Compare(const std::vector<Row>& expected, const std::vector<Row>& actual, int digits) {
  int differences = 0;
  static const Row kNoRow;
  static const Field kNoField;
  for (size_t row = 0; row < std::max(expected.size(), actual.size()); ++row) {
    const Row& wanted = row < expected.size() ? expected[row] : kNoRow;
    const Row& found = row < actual.size() ? actual[row] : kNoRow;
    for (size_t column = 0; column < std::max(wanted.size(), found.size()); ++column) {
      const Field& left = column < wanted.size() ? wanted[column] : kNoField;
      const Field& right = column < found.size() ? found[column] : kNoField;
      if (SameCell(left, right, digits) || ++differences > kShown) continue;
      std::cout << "row " << row + 1 << ", column " << column + 1 << ": expected "
                << FormatRow({left}) << "    found " << FormatRow({right});
    }
  }
  if (differences > 0) std::cout << differences << " cells differ\n";
  return differences == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vok::end_to_end

int main(int count, char** arguments) {
  using namespace vok::end_to_end;
  if (count < 3) {
    std::cerr << "usage: compare_sheets EXPECTED ACTUAL [DIGITS]\n";
    return 2;
  }
  try {
    int digits = count > 3 ? static_cast<int>(Number(arguments[3])) : 0;
    return Compare(ReadCsv(arguments[1]), ReadCsv(arguments[2]), digits);
  } catch (const std::exception& error) {
    std::cerr << "compare_sheets: " << error.what() << '\n';
    return 1;
  }
}
