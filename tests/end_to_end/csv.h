// CSV as the end-to-end tests read it: both the data of a cube and the cells of a sheet.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vok::end_to_end {

/// A field; a sheet's text cells are quoted, its numbers and empty cells are bare.
struct Field {
  std::string text;
  bool quoted = false;
};
using Row = std::vector<Field>;

/// All records of a file. Throws std::runtime_error when it cannot be read.
std::vector<Row> ReadCsv(const std::filesystem::path& path);

/// A text cell of a sheet.
Field Text(std::string text);

/// One record: every quoted field in quotes, then a line feed.
std::string FormatRow(const Row& row);

}  // namespace vok::end_to_end
