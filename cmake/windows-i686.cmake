# Builds for 32-bit Windows with Debian's cross compiler. Doubles are computed in SSE registers,
# as on every other platform: the old unit's wider ones would round differently.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
