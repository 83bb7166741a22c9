# SPDX-License-Identifier: GPL-3.0-or-later
# Which adapters the udev rule's script finds in a list, as the status that udev goes by and what it prints.
#
#   cmake -DROOT=source folder -DFOLDER=scratch folder -P adapter_test.cmake
file(MAKE_DIRECTORY ${FOLDER})
set(list ${FOLDER}/adapters.conf)
string(ASCII 9 tab)
string(ASCII 13 return)
file(WRITE ${list} "# 1a86:7523 was once the lab's\n"
  "  0403:6001\n"
  "${tab}0403:6015:DN01 AB#7${tab}low-latency # the scale\n"
  "10C4:EA60:00C0FFEE${return}\n"
  "067b:2303:it's low-latency\n"
  "  # 2341:0043\n"
  "\n"
  "1d50:6018 low-latency")  # without a line end

function(expect adapter file status output)
  execute_process(COMMAND ${ROOT}/packaging/udev/quarlin-adapter ${adapter} ${file}
                  RESULT_VARIABLE was OUTPUT_VARIABLE printed ERROR_QUIET)
  if(NOT was STREQUAL status OR NOT printed STREQUAL output)
    message(SEND_ERROR "\"${adapter}\" in ${file}: status ${was}, not ${status}; printed \"${printed}\"")
  endif()
endfunction()

set(low "low-latency\n")
expect("0403:6001:" ${list} 0 "")
expect("0403:6001:A50285BI" ${list} 0 "")           # every one of that kind
expect("0403:6015:DN01 AB#7" ${list} 0 ${low})
expect("0403:6015:dn01 ab#7 " ${list} 0 ${low})
expect("0403:6015:DN01 AB#8" ${list} 1 "")
expect("0403:6015:" ${list} 1 "")                   # it is named by a number that this one lacks
expect("0403:60151:" ${list} 1 "")
expect("10c4:ea60:00c0ffee" ${list} 0 "")
expect("067b:2303:it_s" ${list} 0 ${low})           # what udev makes of the quote
expect("1d50:6018:1:2" ${list} 0 ${low})            # a colon within the number
expect("1a86:7523:" ${list} 1 "")
expect("2341:0043:" ${list} 1 "")
expect(":" ${list} 1 "")
expect("0403:6001:" ${FOLDER}/missing 1 "")
expect("0403:6001:" ${FOLDER} 1 "")
expect("0403:6001:" ${ROOT}/packaging/udev/adapters.conf 1 "")  # the example names none
execute_process(COMMAND ${ROOT}/packaging/udev/quarlin-adapter RESULT_VARIABLE was ERROR_QUIET)
if(NOT was EQUAL 2)
  message(SEND_ERROR "without an adapter: status ${was}")
endif()
