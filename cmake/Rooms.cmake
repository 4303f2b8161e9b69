# A room is a folder whose sources only some others may include. Each room gets a target that carries its include
# folder, so that a source sees the headers of the rooms its target is linked to and no others.
#
# The include folder is a folder of links in the build tree: rooms/<room>/<room> points at the room, so that
# `#include "rasteroutput/Processor.h"` resolves for a target linked to `rasteroutput` and fails for all others.

# The folders beside the rooms include their own headers in the same way, by folder: "tests/cip3output/Bytes.h".
foreach(folder tests bench fuzz)
  set(root "${PROJECT_BINARY_DIR}/rooms/${folder}")
  file(MAKE_DIRECTORY "${root}")
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}" "${root}/${folder}" SYMBOLIC)
endforeach()

# sheetvane_room_folder(<name>)
# The include folder of the room in the current folder: rooms/<name>.
function(sheetvane_room_folder name)
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/rooms/${name}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/rooms/${name}/${name}" SYMBOLIC)
endfunction()

# sheetvane_room(<name> [ARCHIVE] SOURCES <file>... [MAY_USE <target>...] [KEEPS <target>...])
# An object library for the room in the current folder. MAY_USE targets are visible in its headers too, KEEPS targets
# in its sources alone. Of an ARCHIVE a program gets the sources that it calls, and with them the libraries they need.
function(sheetvane_room name)
  cmake_parse_arguments(PARSE_ARGV 1 room "ARCHIVE" "" "SOURCES;MAY_USE;KEEPS")
  set(root "${PROJECT_BINARY_DIR}/rooms/${name}")
  sheetvane_room_folder(${name})
  if(room_ARCHIVE)
    add_library(${name} STATIC ${room_SOURCES})
  else()
    add_library(${name} OBJECT ${room_SOURCES})
  endif()
  target_include_directories(${name} PUBLIC "${root}")
  target_link_libraries(${name} PUBLIC ${room_MAY_USE} PRIVATE ${room_KEEPS})
endfunction()

# sheetvane_interface(<name> <header>)
# The declarations of one platform library, interfaces/<header>, as the target <name>_interface.
function(sheetvane_interface name header)
  set(root "${PROJECT_BINARY_DIR}/rooms/interfaces/${name}")
  file(MAKE_DIRECTORY "${root}")
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/interfaces/${header}" "${root}/${header}" SYMBOLIC)
  add_library(${name}_interface INTERFACE)
  target_include_directories(${name}_interface INTERFACE "${root}")
endfunction()

# sheetvane_tests(<room> SOURCES <file>... USES <target>...)
# The tests of a room, as the program <room>_tests. USES names every object library that the program is linked of.
function(sheetvane_tests room)
  cmake_parse_arguments(PARSE_ARGV 1 tests "" "" "SOURCES;USES")
  add_executable(${room}_tests ${tests_SOURCES})
  target_link_libraries(${room}_tests PRIVATE ${tests_USES} GTest::gmock_main)
  gtest_discover_tests(${room}_tests TEST_PREFIX "${room}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300)
endfunction()
