// The component's public class.
//
// All parameters are in and out, as the host program passes them; none of the members writes to its
// texts. But for `GetSetNames`, no failure leaves a member. The class has no state: what a call
// works on is in the `Publics` of the process.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

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
  /// `host` and `publics` must outlive the object.
  clMe(const Host& host, Publics& publics, QueryWindowMaker make_window = {});

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
  /// as int16; any other failure its number as int32 and "".
  Value RunQuery(std::string& CubeSetName, std::string& PeriodsName, std::string& OutputPath);

  /// Fills `sName` with an array of the names stored in a table of the settings database, which is
  /// made when it is missing; one empty element when there are none. The settings folder is the one
  /// that was found last. Returns 0. Failures reach the caller.
  int32_t GetSetNames(Value& sName, std::string& TableName);

  /// The lists that a host program offers: an array of the four arrays period set names,
  /// data-source names, their cube files, the files' dates (the last three in parallel). Empty
  /// after a failure.
  Value Qinfo();

 private:
  Value ShowWindow(std::string& DataBaseFileName);
  Value RunResult(const std::string& PeriodsName) const;

  const Host& host_;
  Publics& publics_;
  QueryWindowMaker make_window_;
};

}  // namespace vok
