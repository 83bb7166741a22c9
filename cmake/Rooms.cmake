# SPDX-License-Identifier: GPL-3.0-or-later
# A room is a folder under src/ that builds into one library of the same name. Naming the rooms it
# uses makes a call against the direction of the arrows a link error; tests/checks reads the includes.

add_library(quarlin_options INTERFACE)
# -Wrestrict warns of string assignments that are right (GCC bug 105651).
target_compile_options(quarlin_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
                                                 $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(QUARLIN_SANITIZE)
  target_compile_options(quarlin_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(quarlin_options INTERFACE -fsanitize=address,undefined)
endif()

# The fuzzer is led by what its input reached.
if(QUARLIN_FUZZ)
  target_compile_options(quarlin_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# quarlin_room(NAME [USES room...] [LIBRARIES target...])
function(quarlin_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
  string(REPLACE "/" "_" target ${name})
  string(REPLACE "/" "_" ROOM_USES "${ROOM_USES}")
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${ROOM_USES} ${ROOM_LIBRARIES} PRIVATE quarlin_options)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)  # a room may be headers only
endfunction()
