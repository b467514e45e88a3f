# The bundle of a Mac, signed for the hardened runtime.

set(contents ${bundle}/Contents)
set(source ${CMAKE_CURRENT_SOURCE_DIR}/macos)
set(icon ${CMAKE_CURRENT_BINARY_DIR}/Orvalle.icns)
set(drawing ${CMAKE_CURRENT_SOURCE_DIR}/linux/app.orvalle.Orvalle.svg)
configure_file(macos/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)

add_custom_command(OUTPUT ${icon}
    COMMAND ${source}/make-icon ${drawing} ${icon}
    DEPENDS ${drawing} ${source}/make-icon
    VERBATIM)

add_custom_target(orvalle-bundle ALL
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${bundle}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/MacOS ${contents}/Resources
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_BINARY_DIR}/Info.plist ${contents}
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:orvalle> ${contents}/MacOS
    COMMAND ${CMAKE_COMMAND} -E copy ${icon} ${PROJECT_SOURCE_DIR}/LICENSE ${contents}/Resources
    COMMAND codesign --force --options runtime --entitlements ${source}/Orvalle.entitlements
            --sign ${ORVALLE_SIGNING_IDENTITY} ${bundle}
    DEPENDS ${icon}
    COMMENT "Putting Orvalle.app together"
    VERBATIM)
add_dependencies(orvalle-bundle orvalle)
