// The spreadsheet program itself: "Excel.Application", late-bound, so that any version serves.
//
// Each pass of a run is saved to the disk at once. Where the program is not registered, or an old
// workbook is to stay until the new one is whole, the spreadsheet that is given for this case
// answers instead. Failures are the program's: 1004 for what it refuses, 429 when it cannot be
// started; and 70 while another run writes the same workbook.
#pragma once

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace vok::windows {

class ExcelSpreadsheet : public Spreadsheet {
 public:
  /// Both must outlive this and the applications it makes.
  ExcelSpreadsheet(Files& files, Spreadsheet& without_excel)
      : files_(files), without_excel_(without_excel) {}
  /// Looks anew each time: a spreadsheet program may have been installed meanwhile.
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) override;

 private:
  Files& files_;
  Spreadsheet& without_excel_;
};

}  // namespace vok::windows
