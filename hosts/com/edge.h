// Where failures stop being exceptions: the end of every method that a host program calls.
#pragma once

#include <cstdint>

#include "system/automation/ole.h"

namespace vok::windows {

/// The result code that carries a failure's number to the host program: a number that is a result
/// code already stays as it is; any other becomes one of the platform's "control" errors, whose
/// number a script sees.
HRESULT ResultCode(int32_t number);

/// The exception being handled, told to the host program: its number as the result code, its
/// description and source as the thread's error information. Call inside a `catch` block only.
HRESULT ReportCurrentFailure() noexcept;

/// Runs the work; all that it throws is reported as above.
template <typename Work>
HRESULT AtEdge(Work&& work) noexcept {
  try {
    work();
    return S_OK;
  } catch (...) {
    return ReportCurrentFailure();
  }
}

/// Fills in what the failed call `code` left as the thread's error information.
void FillException(HRESULT code, EXCEPINFO& exception) noexcept;

}  // namespace vok::windows
