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

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace vok::xlsx {

/// The moment that a workbook tells as that of its making, in seconds since 1970, UTC.
using MakingTime = std::function<int64_t()>;

class XlsxSpreadsheet : public Spreadsheet {
 public:
  /// `files` must outlive this and the workbooks it makes. Without `making_time` these do not tell
  /// any. `threads`: how many may work on one, 0 for as many as the machine has cores for.
  explicit XlsxSpreadsheet(Files& files, MakingTime making_time = {}, unsigned threads = 0);
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) override;

 private:
  Files& files_;
  MakingTime making_time_;
  unsigned threads_;
};

}  // namespace vok::xlsx
