# SPDX-License-Identifier: GPL-3.0-or-later
# Every source file says under which licence it stands: in its first lines, or in its last where tests count the
# lines of a script.
#   cmake -DROOT=... -P licence.cmake

cmake_minimum_required(VERSION 3.25)
set(line "SPDX-License-Identifier: GPL-3.0-or-later")
set(kinds *.cpp *.h *.c *.in *.ui *.js *.vbs *.py *.sh *.cmake CMakeLists.txt)
foreach(folder bench cmake demo packaging src tests tools)
  list(TRANSFORM kinds PREPEND ${ROOT}/${folder}/ OUTPUT_VARIABLE globs)
  file(GLOB_RECURSE found ${globs})
  list(APPEND files ${found})
endforeach()
foreach(name run test .ci/run tools/lint tools/pictures packaging/completion/quarlin packaging/debian/postinst
             packaging/debian/postrm packaging/udev/quarlin-adapter)
  list(APPEND files ${ROOT}/${name})
endforeach()
set(faults 0)
foreach(file IN LISTS files)
  file(READ ${file} text)
  string(FIND "${text}" "${line}" place)
  if(place EQUAL -1)
    message("${file} does not say \"${line}\"")
    math(EXPR faults "${faults} + 1")
  endif()
endforeach()
list(LENGTH files count)
if(faults OR count LESS 500)
  message(FATAL_ERROR "${faults} of ${count} files without their licence")
endif()
