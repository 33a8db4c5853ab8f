// VokCubeQ17 for C++ programs: run saved cube queries into Excel workbooks.
//
//   #include <vokcubeq17.h>
//
//   vokcubeq17::clMe me;
//   std::string data_source = "Sales", periods = "2024", output = "/reports/sales";
//   vok::Value result = me.RunQuery(data_source, periods, output);   // writes /reports/sales.xlsX
//   const auto& parts = *result.As<vok::Value::Array>();
//   if (parts.size() == 2) std::cerr << parts[0].ToInt32() << ": " << parts[1].ToText() << '\n';
//
// Link with -lvokcubeq17. Objects may be made and called on any thread. Settings and the last
// cube's dates are one set of values per process, so calls take turns: a call waits, in the order
// of coming, while another thread's is in progress, and ShowQCform's is as long as its window is
// open. What a call returns is its own. A call inside another one of its thread, such as from the
// handler of a message, would wait for itself and fails at once with the number 6666: RunQuery
// returns it with a text, ShowQCform sets `Error`, GetSetNames throws, Qinfo is empty.
//
// An object remembers what its last run did, and another thread may stop the run that it is in.
#pragma once

#if __cplusplus < 202002L && !(defined(_MSVC_LANG) && _MSVC_LANG >= 202002L)
#error "vokcubeq17.h is written in C++20: compile with -std=c++20, or use vokcubeq17_c.h from C"
#endif

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/failure.h"
#include "platform/value.h"

namespace vokcubeq17 {

/// What a run did.
struct RunReport {
  int32_t code = 0;      ///< of the failure; 0 for a run that went well
  std::string cause;     ///< why it failed, on one line; "" when there is nothing to say
  std::string workbook;  ///< its path; "" when none was written
  uint64_t rows = 0;     ///< written to it, without the labels
  bool stopped = false;  ///< ended because it was asked to
  uint32_t milliseconds = 0;
};

/// The component's one public class. Every text is UTF-8. Parameters are by reference, as the
/// automation interface has them: the callee may write to them. One object serves one thread at a
/// time, except for `Stop`; a copy is another handle of the same object.
class clMe {
 public:
  clMe();

  /// "16.8.28": major, minor and revision.
  std::string Version() const;

  /// Shows the settings window. A failure gives a one-element array and sets `Error` to its number
  /// (445 in a build without windows); otherwise `Error` is left as it was.
  vok::Value ShowQCform(int32_t& Error, std::string& DataBaseFileName);

  /// Runs the data-source setting `CubeSetName` for the period set `PeriodsName` and writes the
  /// workbook `OutputPath` + ".xlsX". An array comes back:
  ///
  ///   success, five elements: 0 period names (texts), 1 opening-balance flags (16-bit, -1 or 0),
  ///   2 the periods' ranges (texts), each of these indexed 0 to 12 with 0 unused; 3 the
  ///   data-source setting's name as stored; 4 `PeriodsName`.
  ///
  ///   failure, two elements: 0 the code, 1 the message. 1111 "Database not Found", 2222 "Cann't
  ///   read Settings", 3333 "Connection error", 4444 "Invalid date", 5555 "Not Valid Measure.Check
  ///   your Settings" are 16-bit integers; any other number is a 32-bit integer with an empty
  ///   message; only 6666, above, has one.
  vok::Value RunQuery(std::string& CubeSetName, std::string& PeriodsName, std::string& OutputPath);

  /// Of this object's last `RunQuery`.
  const RunReport& LastRun() const;

  /// From any thread: ends the run that this object is in, or waits to begin, with nothing written;
  /// an old workbook is then gone, as after any failure. Does nothing when there is none.
  void Stop() const;

  /// From the next run on `show` is told each step as it begins, on the run's thread: its name
  /// ("settings", "cube", "query", "workbook") and how much of the run was done before it, from 0
  /// to 1, which is an estimate; at the end ("", 1). It may call `Stop` and nothing else.
  void ShowProgressWith(std::function<void(const std::string& step, double done)> show);

  /// The values of `SetName` in one settings table ("DataSourceInfo", "Periods", …) as an array;
  /// one empty element when there are none. Uses the settings folder that the last `RunQuery` or
  /// `Qinfo` found, finds it when there was none, and creates the settings database there when it
  /// is missing. Returns 0. The only member that throws: `vok::Failure`.
  int32_t GetSetNames(vok::Value& sName, std::string& TableName);

  /// Four arrays: period set names, data-source names, their cube files ("" where the file is not
  /// there), the files' dates. Empty when there is no settings database.
  vok::Value Qinfo();

 private:
  struct Own;
  std::shared_ptr<Own> own_;
};

/// Where the settings of the process are from now on, in place of what the registry says; "": what
/// that says. Waits for its turn. Failure 6666 inside a call of its thread.
void UseSettingsFolder(const std::string& folder);

/// Where the component's message boxes go: title and text. Without a handler they are printed to
/// stderr. For the whole process, from the next message on; it is called on the threads whose calls
/// have something to say, by one at a time.
void ShowMessagesWith(std::function<void(const std::string& title, const std::string& text)> show);

}  // namespace vokcubeq17
