// Late-bound calls: what comes through `IDispatch` becomes a call of the interface's own slots.
//
// An argument may be a value, a reference to a value of its type, or a reference to a VARIANT, as
// scripting hosts pass their variables; it is converted before the call, and what the member
// changed is written back after it, in the type of the reference. Arguments may be named; each
// parameter is given once. A call that does not fit is refused before the member runs.
#pragma once

#include "hosts/com/interface.h"

namespace vok::windows {

/// Which member is called, and how: a property is read, a method called.
struct CallPlace {
  DISPID member;
  WORD flags;
  LCID locale;
};

/// Where the caller wants the outcome; each may be null.
struct CallOutcome {
  VARIANT* result;
  EXCEPINFO* exception;  ///< a failure of the member: number, description, source
  UINT* bad_argument;    ///< position of an argument that has no such form
};

/// The platform's result codes: DISP_E_EXCEPTION for a failure of the member itself, those of
/// `IDispatch::Invoke` for a call that does not fit it.
HRESULT InvokeMember(_clMe& object, const CallPlace& place, const DISPPARAMS& parameters,
                     const CallOutcome& outcome) noexcept;

}  // namespace vok::windows
