# SPDX-License-Identifier: MIT
#
# Sets in the caller what one of `shards` shares of a program's tests is called, `test`, and the variables that tell the
# program which share it is, `share`.
function(corvanta_share_of_tests name shard shards)
  if(shards EQUAL 1)
    set(test "${name}" PARENT_SCOPE)
  else()
    set(test "${name}.${shard}" PARENT_SCOPE)
  endif()
  math(EXPR index "${shard} - 1")
  set(share "GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${index}" PARENT_SCOPE)
endfunction()

# corvanta_add_desktop_tests(NAME PROGRAM [SHARDS COUNT] [LIMIT SECONDS] [SIZE WIDTHxHEIGHT] [ARGUMENTS ARGUMENT...])
#
# Registers a test program that needs windows, on a virtual desktop of its own. With SHARDS it becomes that many tests,
# NAME.1 and so on, each with its share of the program's tests, on desktops side by side. Programs on a desktop mostly
# wait for one another, so more of these tests run at once than there are processors, and they begin before the short
# ones: the whole ends sooner by what the longest of them takes.
function(corvanta_add_desktop_tests name program)
  cmake_parse_arguments(PARSE_ARGV 2 desktop "" "SHARDS;LIMIT;SIZE" "ARGUMENTS")
  if(desktop_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "corvanta_add_desktop_tests(${name}) does not know ${desktop_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT desktop_LIMIT)
    set(desktop_LIMIT 280)
  endif()
  if(NOT desktop_SIZE)
    set(desktop_SIZE 1600x1000)
  endif()
  if(NOT desktop_SHARDS)
    set(desktop_SHARDS 1)
  endif()
  # The desktop ends what runs on it before CTest loses patience.
  math(EXPR timeout "${desktop_LIMIT} + 20")
  foreach(shard RANGE 1 ${desktop_SHARDS})
    corvanta_share_of_tests("${name}" ${shard} ${desktop_SHARDS})
    add_test(NAME "${test}" COMMAND "${PROJECT_SOURCE_DIR}/tests/support/virtual-desktop" --size ${desktop_SIZE}
      --limit ${desktop_LIMIT} $<TARGET_FILE:${program}> ${desktop_ARGUMENTS})
    set_tests_properties("${test}" PROPERTIES LABELS desktop TIMEOUT ${timeout} COST 10 ENVIRONMENT "${share}")
  endforeach()
endfunction()

# corvanta_add_unit_tests(NAME PROGRAM [SHARDS COUNT] [ENVIRONMENT VARIABLE=VALUE...])
#
# Registers a test program that needs no windows, likewise. A process for each of some thousand tests would take longer to
# start than most of them take; a few shares of each program keep all processors busy. GTEST_FILTER names single tests.
function(corvanta_add_unit_tests name program)
  cmake_parse_arguments(PARSE_ARGV 2 unit "" "SHARDS" "ENVIRONMENT")
  if(unit_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "corvanta_add_unit_tests(${name}) does not know ${unit_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT unit_SHARDS)
    set(unit_SHARDS 1)
  endif()
  foreach(shard RANGE 1 ${unit_SHARDS})
    corvanta_share_of_tests("${name}" ${shard} ${unit_SHARDS})
    add_test(NAME "${test}" COMMAND ${program})
    set_tests_properties("${test}" PROPERTIES LABELS unit TIMEOUT 300
      ENVIRONMENT "${share};${unit_ENVIRONMENT}")
  endforeach()
endfunction()
