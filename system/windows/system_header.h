// The system's own headers, without the macros that would rename what our ports declare.
#pragma once

// The others need the first.
// clang-format off
#include <windows.h>
#include <oleauto.h>
#include <shellapi.h>
// clang-format on

#undef CreateDirectory
#undef MessageBox
#undef OpenDesktop
