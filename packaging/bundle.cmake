# Puts a bundle together and signs it:
#   cmake -DBUNDLE=FOLDER -DPROGRAMS=FILE[;FILE…] -DINFORMATION=FILE -DCODESIGN=PROGRAM [-DKEY=FILE] -P bundle.cmake
# Equal inputs make equal bundles, whoever makes them, when and where.

cmake_minimum_required(VERSION 3.25)

set(source ${CMAKE_CURRENT_LIST_DIR}/linux)
get_filename_component(project ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(icons ${BUNDLE}/share/icons/hicolor)

# What is gone from the sources must not stay, and what was put there by somebody else must not be signed.
file(REMOVE_RECURSE ${BUNDLE})
file(COPY ${source}/AppRun ${project}/LICENSE ${INFORMATION} DESTINATION ${BUNDLE})
file(COPY ${PROGRAMS} DESTINATION ${BUNDLE}/bin)
file(COPY ${project}/demo/page DESTINATION ${BUNDLE}/share/orvalle-demo)
file(COPY ${source}/orvalle.1 ${source}/orvalle-demo.1 ${source}/orvalle-codesign.1 ${source}/orvalle-package.1
     DESTINATION ${BUNDLE}/share/man/man1)
file(COPY ${source}/app.orvalle.Orvalle.desktop DESTINATION ${BUNDLE}/share/applications)
file(COPY ${source}/app.orvalle.Orvalle.svg DESTINATION ${icons}/scalable/apps)
file(COPY ${source}/app.orvalle.Orvalle-symbolic.svg DESTINATION ${icons}/symbolic/apps)
# Modes are signed, and would otherwise follow the mask of whoever checked out or built.
execute_process(COMMAND chmod -R u=rwX,go=rX ${BUNDLE} COMMAND_ERROR_IS_FATAL ANY)

set(key)
if(KEY)
  set(key --key ${KEY})
endif()
execute_process(COMMAND ${CODESIGN} sign ${key} ${BUNDLE} COMMAND_ERROR_IS_FATAL ANY)
