# SPDX-License-Identifier: MIT
# What makes a fault in these programs hard to use, as usage requirements of CorvantaBuildOptions. The test
# HardenedPrograms reads it off the programs that were built.

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

target_compile_options(CorvantaBuildOptions INTERFACE -fstack-protector-strong)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_compile_options(CorvantaBuildOptions INTERFACE -fstack-clash-protection)
  target_link_options(CorvantaBuildOptions INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,separate-code)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  target_compile_options(CorvantaBuildOptions INTERFACE -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$" AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_compile_options(CorvantaBuildOptions INTERFACE -mbranch-protection=standard)
endif()

# The checked functions of the C library need an optimiser, and hide from the sanitizers what those look at.
string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
set(CORVANTA_FORTIFIED OFF)
if(NOT CORVANTA_SANITIZE AND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}" MATCHES "-O[123s]")
  set(CORVANTA_FORTIFIED ON)
  target_compile_options(CorvantaBuildOptions INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()
unset(type)
