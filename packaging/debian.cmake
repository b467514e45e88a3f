# The Debian package: cmake --build --preset release --target package

set(ORVALLE_PACKAGE_MAINTAINER "The Orvalle authors <packages@orvalle.app>" CACHE STRING
    "Who looks after the Debian package, with an address")
# Every build is newer than the one before.
set(ORVALLE_PACKAGE_VERSION ${PROJECT_VERSION}+${ORVALLE_BUILD})

set(source ${CMAKE_CURRENT_SOURCE_DIR}/linux)
set(generated ${CMAKE_CURRENT_BINARY_DIR})
set(codesign $<TARGET_FILE:orvalle-codesign>)
set(signing_key)
if(ORVALLE_SIGNING_KEY)
  set(signing_key "--key \"${ORVALLE_SIGNING_KEY}\"")
endif()
configure_file(linux/app.orvalle.Orvalle.metainfo.xml.in app.orvalle.Orvalle.metainfo.xml @ONLY)
configure_file(linux/debian/changelog.in changelog @ONLY)
configure_file(linux/debian/install.cmake.in install.cmake.in @ONLY)
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/install.cmake INPUT ${CMAKE_CURRENT_BINARY_DIR}/install.cmake.in)

install(DIRECTORY ${PROJECT_BINARY_DIR}/Orvalle.app DESTINATION opt/orvalle USE_SOURCE_PERMISSIONS)
install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/install.cmake)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvalle)
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_DEBIAN_PACKAGE_VERSION ${ORVALLE_PACKAGE_VERSION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${ORVALLE_PACKAGE_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep your focus session in sight")
set(CPACK_PACKAGE_DESCRIPTION "Orvalle is the desktop companion of the Orvalle focus web application. It
hosts the application in a window of its own and shows the session that is
running in the status bar, in the menu there and in a small panel that floats
above all programs, from where it can be controlled too.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "desktop-file-utils, glib-networking, gsettings-desktop-schemas, librsvg2-common, default-dbus-session-bus | dbus-session-bus")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, at-spi2-core, fonts-inter")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
