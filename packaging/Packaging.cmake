# SPDX-License-Identifier: MIT
# The Debian package, made of what is installed. Its version is the project's, with the build number behind it.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvanta)
set(CPACK_PACKAGE_VENDOR Corvanta)
set(CPACK_PACKAGE_CONTACT "Corvanta <${CORVANTA_SUPPORT_ADDRESS}>")
set(CPACK_PACKAGE_HOMEPAGE_URL "${CORVANTA_WEBSITE_URL}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
  "Opens a page on a simulated iPhone or iPad, attaches the Web Inspector to it and tiles their windows.
Comes with a device lab: simulated devices with real WebKit pages, a small Safari with a Develop menu, and the
command-line tools that drive both.")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION "${PROJECT_VERSION}")
if(CORVANTA_BUILD_NUMBER)
  string(APPEND CPACK_DEBIAN_PACKAGE_VERSION "+${CORVANTA_BUILD_NUMBER}")
endif()
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no library brings along: the buses, the authorities that https trusts, and what GTK draws its icons with.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "at-spi2-core, ca-certificates, default-dbus-session-bus | dbus-session-bus, librsvg2-common")
# Pages over https, and something to write them with.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, glib-networking")

include(CPack)
