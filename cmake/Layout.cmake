# SPDX-License-Identifier: MIT
# Where programs land. The build tree mirrors the installed tree, so that a program finds its companions by the same
# relative path in both.

include(GNUInstallDirs)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CORVANTA_LAB_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/libexec/corvanta-lab")
set(CORVANTA_TEST_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
