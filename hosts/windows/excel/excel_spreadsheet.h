// The spreadsheet program itself: "Excel.Application", late-bound, so that any version serves.
//
// Where it is not registered, the spreadsheet that is given for this case answers instead. Failures
// are the program's: 1004 for what it refuses, 429 when it cannot be started.
#pragma once

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace vok::windows {

class ExcelSpreadsheet : public Spreadsheet {
 public:
  /// Both must outlive this and the applications it makes.
  ExcelSpreadsheet(const Files& files, Spreadsheet& without_excel)
      : files_(files), without_excel_(without_excel) {}
  /// Looks anew each time: a spreadsheet program may have been installed meanwhile.
  std::unique_ptr<SpreadsheetApplication> NewApplication() override;

 private:
  const Files& files_;
  Spreadsheet& without_excel_;
};

}  // namespace vok::windows
