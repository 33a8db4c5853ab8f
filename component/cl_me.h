// The component's public class.
//
// All parameters are in and out, as the host program passes them; none of the members writes to its
// texts. No failure leaves a member, except `GetSetNames`. The class has no state: what a call
// works on is in the `Publics` of the process. Any thread may call: calls take turns, and a call
// inside another one of its thread fails with 6666 (call_turns.h). The turn of `ShowQCform` lasts
// as long as its window.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "component/call_turns.h"
#include "component/publics.h"
#include "platform/host.h"
#include "platform/value.h"

namespace vok {

/// The settings window, as `clMe` needs it. It is unloaded when it is destroyed.
class QueryWindow {
 public:
  virtual ~QueryWindow() = default;
  virtual Value Initialize(std::string& DataBaseFileName) = 0;
  /// Returns when the user has closed the window.
  virtual void Show() = 0;
};

/// Makes the settings window; empty in a build without windows.
using QueryWindowMaker = std::function<std::unique_ptr<QueryWindow>(const Host&, Publics&)>;

class clMe {
 public:
  /// All outlive the object. `turns` are those of `publics`; none for a caller who is alone with
  /// them or has the turn already.
  clMe(const Host& host, Publics& publics, QueryWindowMaker make_window = {},
       CallTurns* turns = nullptr);

  /// Such as "16.8.28".
  std::string Version() const;

  /// Shows the settings window and returns what it was initialized to. A failure shows nothing: it
  /// sets `Error` to its number and the result is a one-element array; `Error` is 445 in a build
  /// without windows. Otherwise `Error` is left as it is.
  Value ShowQCform(int32_t& Error, std::string& DataBaseFileName);

  /// Runs a saved query into the workbook `OutputPath` & ".xlsX". On success an array of five:
  ///
  /// | 0 | texts   | names of the periods                                                    |
  /// | 1 | int16   | -1 for a period with its opening balance, else 0, as the run left it    |
  /// | 2 | texts   | ranges of the periods, "from - until" in the short date format, where a |
  /// |   |         | date that is not set is left out; "" for a period without dates         |
  /// | 3 | text    | name of the data-source setting as it is stored                         |
  /// | 4 | text    | `PeriodsName`                                                           |
  ///
  /// The arrays 0 to 2 have the indexes 0 to 12; index 0 is not used ("" or 0). Otherwise an array
  /// of two, code and message: 1111 "Database not Found", 2222 "Cann't read Settings", 3333
  /// "Connection error", 4444 "Invalid date", 5555 "Not Valid Measure.Check your Settings", these
  /// as int16; any other failure its number as int32 and "", that of the turn with its text.
  Value RunQuery(std::string& CubeSetName, std::string& PeriodsName, std::string& OutputPath);

  /// Fills `sName` with an array of the names stored in a table of the settings database, which is
  /// made when it is missing; one empty element when there are none. The settings folder is the one
  /// that was found last; it is found now when none was yet. Returns 0. Failures reach the caller.
  int32_t GetSetNames(Value& sName, std::string& TableName);

  /// The lists that a host program offers: an array of the four arrays period set names,
  /// data-source names, their cube files, the files' dates (the last three in parallel). Empty
  /// after a failure.
  Value Qinfo();

 private:
  Value ShowReporting(int32_t& Error, std::string& DataBaseFileName);
  Value ShowWindow(std::string& DataBaseFileName);
  Value RunResult(const std::string& PeriodsName) const;

  const Host& host_;
  Publics& publics_;
  QueryWindowMaker make_window_;
  CallTurns* turns_;
};

}  // namespace vok
