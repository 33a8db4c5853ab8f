# What the toolchain files of both architectures share. Programs and DLLs hold all that they need
# and load the system's own DLLs alone. What is built runs here through Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(triplet ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")

# scripts/windows-libraries puts them there.
get_filename_component(libraries
  ${CMAKE_CURRENT_LIST_DIR}/../build/windows/libraries/${CMAKE_SYSTEM_PROCESSOR} ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${libraries} /usr/${triplet})
set(CMAKE_CROSSCOMPILING_EMULATOR
  ${CMAKE_CURRENT_LIST_DIR}/../scripts/run-in-wine ${CMAKE_SYSTEM_PROCESSOR})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
