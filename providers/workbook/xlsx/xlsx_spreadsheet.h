// The spreadsheet program that needs no program: answers the spreadsheet port with .xlsx files.
//
// The workbook of a run is kept in memory, where the applications of its passes find it, and goes
// to the disk whole, by `Commit`. Nothing is ever read: to open another workbook is failure 1004.
//
// Values: numbers and dates as numbers, a date from 1 March 1900 on; texts as texts, cleaned by the
// rules of text_rules.h; "", empty and NULL leave the cell blank. Failures, each with what to do:
//
//   1004  NaN, infinity, a date before March 1900, a text over 32,767 UTF-16 units, a cell off the
//         sheet (1,048,576 rows, 16,384 columns), a sheet name or column range the program refuses,
//         a workbook that is not the run's own
//   13    a value that no cell can hold (an array, an error value)
//   9     no sheet of that index
//   91    no workbook is open
//   53, 61, 70, ... from the files port
#pragma once

#include <memory>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace vok::xlsx {

class XlsxSpreadsheet : public Spreadsheet {
 public:
  /// `files` must outlive this and the workbooks it makes.
  explicit XlsxSpreadsheet(Files& files) : files_(files) {}
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) override;

 private:
  Files& files_;
};

}  // namespace vok::xlsx
