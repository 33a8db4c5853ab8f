# One folder, one static library. A room sees its own headers and those of the rooms it links,
# nothing else: each room's include path holds links to its own headers alone, not to those of
# rooms in folders below it, so a wrong arrow does not compile (tests/rooms tries).
#
#   vok_room(cube SOURCES a.cpp b.cpp ROOMS settings LIBRARIES ICU::uc)
#
# Target: vok_<name>. Headers are included by their path from the root: "cube/probe.h". FOLDERS
# names folders below that belong to the room.
function(vok_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;ROOMS;LIBRARIES;FOLDERS" ${ARGN})
  set(window ${PROJECT_BINARY_DIR}/rooms/${name})
  file(REMOVE_RECURSE ${window})
  set(headers *.h)
  foreach(folder IN LISTS ROOM_FOLDERS)
    list(APPEND headers ${folder}/*.h)
  endforeach()
  list(TRANSFORM headers PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  file(GLOB headers CONFIGURE_DEPENDS ${headers})
  foreach(header IN LISTS headers)
    file(RELATIVE_PATH path ${PROJECT_SOURCE_DIR} ${header})
    get_filename_component(folder ${window}/${path} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${header} ${window}/${path} SYMBOLIC)
  endforeach()

  set(target vok_${name})
  if(ROOM_SOURCES)
    add_library(${target} STATIC ${ROOM_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE vok_options ${ROOM_LIBRARIES})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${window})
  foreach(room IN LISTS ROOM_ROOMS)
    target_link_libraries(${target} ${scope} vok_${room})
  endforeach()
endfunction()

# A part of the component that it loads when it is first needed: module.cpp on a room and its
# libraries. FILE is its name, which holds the version: a module of another one is never loaded. It
# is installed with PART, beside the shared library in a folder of its own.
function(vok_module target file part)
  add_library(${target} MODULE module.cpp)
  target_link_libraries(${target} PRIVATE vok_options ${ARGN})
  target_link_options(${target} PRIVATE LINKER:--exclude-libs,ALL)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${file} PREFIX "" SUFFIX ""
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  install(TARGETS ${target} LIBRARY DESTINATION ${VOK_MODULE_FOLDER} COMPONENT ${part})
endfunction()

# The undefined-behaviour sanitizer takes a third of the time of compiling tests; the product's own
# files keep it. (An option of the target itself would come before those that turn it on.)
add_library(vok_test_options INTERFACE)
if(VOKCUBE_SANITIZE)
  target_compile_options(vok_test_options INTERFACE -fno-sanitize=undefined)
endif()

# Tests of one folder: one program, its cases known to CTest one by one.
#
#   vok_test(env SOURCES path_root_test.cpp ROOMS env support)
function(vok_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;ROOMS;LIBRARIES" ${ARGN})
  set(target test_${name})
  add_executable(${target} ${TEST_SOURCES})
  target_link_libraries(${target} PRIVATE vok_options vok_test_options ${TEST_LIBRARIES}
    GTest::gmock GTest::gtest_main)
  foreach(room IN LISTS TEST_ROOMS)
    target_link_libraries(${target} PRIVATE vok_${room})
  endforeach()
  if(CMAKE_CROSSCOMPILING)  # starting a program takes long there: once for all of its cases
    add_test(NAME ${name} COMMAND ${target})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  else()
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
  endif()
endfunction()

# The test draws windows, on the one screen that there is for such tests: two at a time would take
# keys and the foreground from each other.
#
#   vok_on_a_screen(windows_view VOKCUBE_DPI=144)
function(vok_on_a_screen test)
  set_tests_properties(${test} PROPERTIES RESOURCE_LOCK screen
    ENVIRONMENT "VOKCUBE_SCREEN=on;${ARGN}")
endfunction()
