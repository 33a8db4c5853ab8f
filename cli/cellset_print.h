// A query's answer as a table for people, as CSV or as JSON.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "platform/cube.h"

namespace vok::cli {

/// The headers of one hierarchy of an axis. A caption that several members of the column share gets
/// the names above it, "2009 / 1", and where even that is shared the member's own name after it,
/// "Smith (17)".
struct HeaderColumn {
  std::string hierarchy;           ///< "ActX.xlFile"; "" where no position tells it
  std::vector<std::string> texts;  ///< by position
};

/// One column per member of a position.
std::vector<HeaderColumn> AxisHeaders(const Cellset& cellset, std::size_t axis);

/// Rows are the positions of every axis but the first, the second axis running fastest; columns are
/// the first axis. The line above the rows names their hierarchies. Values stand in their formats,
/// control characters are written out, and an axis without positions is named below.
void PrintTable(const Cellset& cellset, std::ostream& out);

/// The same rows and columns as RFC 4180 CSV: one header line per hierarchy of the columns, then a
/// line per row; values with every digit, control characters except tabs written out.
void PrintCsv(const Cellset& cellset, std::ostream& out);

/// {"axes": [[[{"UniqueName", "Caption", "LevelName"} per hierarchy] per position] per axis],
/// "cells": [number | text | true | false | null]}, cells with the first axis running fastest.
void PrintJson(const Cellset& cellset, std::ostream& out);

}  // namespace vok::cli
