# SPDX-License-Identifier: MIT
# Makes the program a bundle: what macOS reads of it, and its icon. Signing and the disk image come with ./dev package.
if(NOT TARGET Corvanta)
  return()
endif()

set(CORVANTA_BUNDLE_VERSION "${PROJECT_VERSION}")
set(CORVANTA_BUNDLE_BUILD "${CORVANTA_BUILD_NUMBER}")
if(NOT CORVANTA_BUNDLE_BUILD)
  # The system wants a number; what the program shows of itself stays "Local".
  set(CORVANTA_BUNDLE_BUILD 0)
endif()
file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" CORVANTA_COPYRIGHT REGEX "^Copyright" LIMIT_COUNT 1)
configure_file("${CMAKE_CURRENT_LIST_DIR}/Info.plist.in" "${CMAKE_BINARY_DIR}/Info.plist" @ONLY)

add_executable(IconSet EXCLUDE_FROM_ALL "${CMAKE_CURRENT_LIST_DIR}/IconSet.cpp")
target_link_libraries(IconSet PRIVATE CorvantaBuildOptions Qt6::Gui Qt6::Svg)
set_target_properties(IconSet PROPERTIES AUTOMOC OFF)
find_program(CORVANTA_ICONUTIL iconutil REQUIRED)
set(CORVANTA_ICON "${CMAKE_BINARY_DIR}/Corvanta.icns")
add_custom_command(
  OUTPUT "${CORVANTA_ICON}"
  COMMAND IconSet "${PROJECT_SOURCE_DIR}/data/desktop/dev.corvanta.Corvanta.svg" "${CMAKE_BINARY_DIR}/Corvanta.iconset"
  COMMAND "${CORVANTA_ICONUTIL}" --convert icns --output "${CORVANTA_ICON}" "${CMAKE_BINARY_DIR}/Corvanta.iconset"
  DEPENDS IconSet "${PROJECT_SOURCE_DIR}/data/desktop/dev.corvanta.Corvanta.svg"
  VERBATIM)
add_custom_target(CorvantaIcon DEPENDS "${CORVANTA_ICON}")
add_dependencies(Corvanta CorvantaIcon)
add_custom_command(TARGET Corvanta POST_BUILD
  COMMAND "${CMAKE_COMMAND}" -E make_directory "$<TARGET_BUNDLE_CONTENT_DIR:Corvanta>/Resources"
  COMMAND "${CMAKE_COMMAND}" -E copy_if_different "${CORVANTA_ICON}" "$<TARGET_BUNDLE_CONTENT_DIR:Corvanta>/Resources"
  VERBATIM)
set_target_properties(Corvanta PROPERTIES MACOSX_BUNDLE ON MACOSX_BUNDLE_INFO_PLIST "${CMAKE_BINARY_DIR}/Info.plist")
