// The spreadsheet program that needs no program: answers the spreadsheet port with .xlsx files.
//
// Rows are written from top to bottom and encoded as they come; only row 1 can be written again.
// The applications of a run's passes go on where the one before them saved; the file goes to the
// disk whole, by `Commit`. Nothing is ever read: to open another workbook is failure 1004.
//
// Values: numbers; texts as texts, cleaned by the rules of text_rules.h; "" and empty leave the
// cell blank. Failures, each with what to do:
//
//   1004  NaN, infinity, a text over 32,767 UTF-16 units, a cell off the sheet (1,048,576 rows,
//         16,384 columns) or above one that is written, a sheet name or column range the program
//         refuses, a workbook that is not the run's own
//   9     no sheet of that index
//   91    no workbook is open
//   53, 61, 70, ... from the files port
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace vok::xlsx {

/// How a sheet is to be read and printed. It changes no value, text or cell.
struct SheetLook {
  std::size_t captions = 0;  ///< columns from A on that say what a row is; 0: no look at all
  std::size_t columns = 0;   ///< with those of numbers, whose labels stand in row 1
  std::vector<std::string> formats = {};  ///< of numbers in the columns after the captions, in turn
};

class XlsxSpreadsheet : public Spreadsheet {
 public:
  /// `files` must outlive this and the workbooks it makes, which have the look. `threads`: how many
  /// may work on one, 0 for as many as the machine has cores for.
  explicit XlsxSpreadsheet(Files& files, SheetLook look = {}, unsigned threads = 0);
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) override;

 private:
  Files& files_;
  SheetLook look_;
  unsigned threads_;
};

}  // namespace vok::xlsx
