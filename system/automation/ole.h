// The platform's automation interfaces, without what they would do to names of ours.
#pragma once

#include "system/windows/system_header.h"
// after the system's own header
#include <ole2.h>

#undef GetObject  // a macro of theirs

#ifdef __GNUC__
// Objects of these interfaces are counted and delete themselves: none has a virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
