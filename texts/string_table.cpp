#include "texts/string_table.h"

#include <algorithm>
#include <iterator>

#include "texts/text_numbers.h"

namespace vok {
namespace {

namespace n = text_number;

struct Row {
  int number;
  const char* text;
};

constexpr Row kTexts[] = {
    {n::kMainWindow, "Query Cube to QEL"},
    {n::kCubeWindow, "Choose a cube"},
    {n::kOptionWindow, "Money sets"},
    {n::kLinearDatesWindow, "Fill period dates"},
    {n::kLacksWindow, "What the cube lacks"},
    {n::kOk, "OK"},
    {n::kCancel, "Cancel"},
    {n::kBrowse, "Choose a file"},
    {n::kHelp, "Help"},
    {n::kClose, "Close"},
    {n::kSaveAndRun, "&Save and run"},
    {n::kRunAsSaved, "&Run as saved"},
    {n::kDiscard, "&Discard"},
    {n::kRename, "&Rename"},
    {n::kKeepNames, "&Keep these names"},
    {n::kAskDelete, "Are you shure you want to delete "},
    {n::kNotValidDate, " Not Valid date "},
    {n::kInvalidPeriodDate, "Invalid date entered at period"},
    {n::kNoDataSource, "No Data Source selected!\r\n Save of datasource Canceled!"},
    {n::kNoQelCube, "QeL cube not found..."},
    {n::kMeasures, "MEASURES "},
    {n::kError, "Error"},
    {n::kOpenAFile, " - Open a file"},
    {n::kAskSave, "Save the changes?"},
    {n::kWorkbookAt, "The workbook is "},
    {n::kNoWorkbook,
     "No workbook was written: no period meets the dates of the cube, or the cube has no facts in "
     "them."},
    {n::kNothingToRun, "Choose a data source and name the workbook."},
    {n::kSaveAFile, " - Save a file"},
    {n::kWorkbookGone, "The workbook is not there any more; run the query again: "},
    {n::kUnsaved, "Changes that are not saved:"},
    {n::kAskRename, "Rename these periods, too?"},
    {n::kGivenNames, "Names that were typed, and names by the dates:"},
    {n::kUnseen,
     "Not saved: the set of this name could not be loaded, and would be lost unseen. Choose it "
     "again, save under another name, or delete it first: "},
    {n::kAdviceRun, "Mend this, then run the query again."},
    {n::kAdviceCube,
     "Look whether the cube's file or server is there, or choose another cube; then run again."},
    {n::kAdviceMeasures,
     "Choose measures that the cube has in the marked rows, save, and run again."},
    {n::kDataSource, "&Data source"},
    {n::kPeriodSet, "P&eriod set"},
    {n::kHostDatabase, "Host data&base"},
    {n::kCubeFile, "C&ube file"},
    {n::kCubeName, "Cube"},
    {n::kObs, "&OBS member"},
    {n::kActFile, "Act inde&x file"},
    {n::kPeriodName, "Period"},
    {n::kFromDate, "From"},
    {n::kUntilDate, "Until"},
    {n::kOpeningBalance, "Opening balance"},
    {n::kUpdate, "Update"},
    {n::kFromMonthStart, "From the first of the &month"},
    {n::kUntilMonthEnd, "Until the &last of the month"},
    {n::kCleanDates, "Clea&n dates"},
    {n::kAutoFill, "&Auto fill..."},
    {n::kOptions, "Money se&ts..."},
    {n::kSave, "&Save"},
    {n::kDeleteDataSource, "Delete"},
    {n::kDeletePeriods, "Delete"},
    {n::kRunQuery, "&Run query"},
    {n::kWorkbook, "&Workbook"},
    {n::kChooseCube, "Choose &cube..."},
    {n::kSourceFrame, "Data source"},
    {n::kPeriodsFrame, "Periods and their measures"},
    {n::kNamePeriods, "Name per&iods"},
    {n::kQuantity, "Quantity"},
    {n::kCopyMeasure, "Copy the measure to all"},
    {n::kRunning, "The query is running..."},
    {n::kStop, "Stop"},
    {n::kStopping, "Stopping..."},
    {n::kResultFrame, "Result"},
    {n::kResultRows, "%1 rows in %2 s"},
    {n::kResultNone, "No workbook was written"},
    {n::kResultStopped, "The query was stopped before its end"},
    {n::kResultIncomplete,
     "This workbook is not the whole answer and could not be removed; delete it"},
    {n::kOpenWorkbook, "Open workbook"},
    {n::kOpenFolder, "Open folder"},
    {n::kFirstRows, "First rows"},
    {n::kMoneyTotals, "Money by period"},
    {n::kCopy, "Copy"},
    {n::kReportLine, "Line"},
    {n::kMenuFile, "&File"},
    {n::kMenuSave, "&Save"},
    {n::kMenuRun, "&Run query"},
    {n::kMenuClose, "&Close"},
    {n::kMenuPeriods, "&Periods"},
    {n::kMenuAutoFill, "&Auto fill..."},
    {n::kMenuClean, "&Clean dates"},
    {n::kMenuHelp, "&Help"},
    {n::kMenuContents, "&Contents"},
    {n::kMenuNamePeriods, "&Name periods"},
    {n::kMenuDeleteSource, "Delete &data source"},
    {n::kMenuDeletePeriods, "Delete &period set"},
    {n::kMenuView, "&View"},
    {n::kMenuOpenWorkbook, "Open &workbook"},
    {n::kMenuOpenFolder, "Open &folder"},
    {n::kMenuCopy, "C&opy the result"},
    {n::kMenuChart, "&Chart of the money"},
    {n::kMenuAbout, "&About..."},
    {n::kTipDataSource, "Choose a saved data source, or type a new name"},
    {n::kTipPeriods, "Choose a saved period set, or type a new name"},
    {n::kTipOpeningBalance,
     "The period begins on 1 January and brings the opening balance forward"},
    {n::kTipUpdate, "Bring the dates of this row to the start and end of their months"},
    {n::kTipCleanDates, "Empty all dates and opening balances"},
    {n::kTipAutoFill, "Fill the dates by month, quarter, half year or year"},
    {n::kTipObs, "The member that every query is limited to"},
    {n::kTipWorkbook, "Path of the workbook without its ending"},
    {n::kTipMeasure, "Choose the measures of the money sets"},
    {n::kTipNamePeriods, "Name the periods by their dates: 2024-01, 2024 Q1, 2024 H1, 2024"},
    {n::kTipOtherDates, "This name is of other dates than those of its row"},
    {n::kTipCopyMeasure, "Give all money sets the measure and quantity of this one"},
    {n::kTipCopy, "Copy what is shown here"},
    {n::kTipHostDatabase, "The database of the program that the figures come from; needed"},
    {n::kTipActFile, "The file of the acts' index, where the program has one; may stay empty"},
    {n::kTipCubeFile, "A cube file, or the address of a cube server: http://..."},
    {n::kTipBrowse, "Choose a file"},
    {n::kTipDelete, "Delete the saved set of this name"},
    {n::kTipDate, "A date; F4 or a double click opens a calendar"},
    {n::kMoneySet, "Money set"},
    {n::kMeasure, "Measure"},
    {n::kQtyMeasure, "Quantity measure"},
    {n::kCalculated, "Calculated"},
    {n::kCountMoney, "&Number of money sets"},
    {n::kTipCalculated, "The measure is a calculated one"},
    {n::kCubeFileOfWindow, "Cube &file"},
    {n::kCatalogOfWindow, "&Cube"},
    {n::kOpenCubeFile, "&Open file..."},
    {n::kLacks, "Saved queries need what this cube does not have:"},
    {n::kLackWhat, "What is missing"},
    {n::kLackMend, "A line of the schema that gives it"},
    {n::kInterval, "&Interval"},
    {n::kAnchorDate, "&Start date"},
    {n::kEndDate, "&End date"},
    {n::kFirstPeriod, "&First period"},
    {n::kLastPeriod, "&Last period"},
    {n::kMonth, "Month"},
    {n::kQuarter, "Quater"},
    {n::kHalfYear, "Half Year"},
    {n::kYear, "Year"},
};

}  // namespace

std::string StringTableText(int number) {
  const auto* found =
      std::lower_bound(std::begin(kTexts), std::end(kTexts), number,
                       [](const Row& row, int wanted) { return row.number < wanted; });
  return found != std::end(kTexts) && found->number == number ? found->text : std::string();
}

std::vector<int> StringTableNumbers() {
  std::vector<int> numbers;
  for (const Row& row : kTexts) numbers.push_back(row.number);
  return numbers;
}

}  // namespace vok
