# SPDX-License-Identifier: MIT
# Several sources compiled as one: a build from nothing takes a third of the time, since most of it is reading the headers
# of libraries. A change then compiles its neighbours as well, a few seconds more.

option(CORVANTA_UNITY_BUILD "Compile several sources of a target as one" OFF)
set(CMAKE_UNITY_BUILD ${CORVANTA_UNITY_BUILD})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)

# corvanta_compile_alone(SOURCE...): for sources whose own names (a constant, a helper of a test) their neighbours use too,
# or whose library headers define macros that others stumble over.
function(corvanta_compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
