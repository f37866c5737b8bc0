# SPDX-License-Identifier: MIT
# The language level, the warnings and the sanitizers, as usage requirements of one interface target.

if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang" OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS 16)
  message(FATAL_ERROR
    "Corvanta needs Clang 16 or later (found ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}).\n"
    "GCC 12 destroys the arguments of awaited expressions twice. Configure with one of the presets "
    "(cmake --preset dev), or pass -DCMAKE_CXX_COMPILER=clang++-19.")
endif()

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CORVANTA_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
option(CORVANTA_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

add_library(CorvantaBuildOptions INTERFACE)
target_compile_features(CorvantaBuildOptions INTERFACE cxx_std_23)
target_compile_options(CorvantaBuildOptions INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
target_compile_definitions(CorvantaBuildOptions INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH)
if(CORVANTA_WARNINGS_AS_ERRORS)
  target_compile_options(CorvantaBuildOptions INTERFACE -Werror)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # Libraries that only other libraries name are not loaded.
  target_link_options(CorvantaBuildOptions INTERFACE -Wl,--as-needed)
endif()
if(CORVANTA_SANITIZE)
  target_compile_options(CorvantaBuildOptions INTERFACE
    -fsanitize=${CORVANTA_SANITIZE} -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(CorvantaBuildOptions INTERFACE -fsanitize=${CORVANTA_SANITIZE})
endif()
if(CORVANTA_SANITIZE MATCHES "thread")
  add_library(CorvantaThreadSanitizerClone OBJECT "${CMAKE_CURRENT_LIST_DIR}/ThreadSanitizerClone.c")
  target_link_libraries(CorvantaBuildOptions INTERFACE $<TARGET_OBJECTS:CorvantaThreadSanitizerClone>)
endif()
