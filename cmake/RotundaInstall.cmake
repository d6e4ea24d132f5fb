# What is installed, and where: the tree of packaging/ with what the build makes.
#
# Version, description and home page are told in project(), the release notes in CHANGELOG.md, the other
# names here. Everything that carries one of them is configured from a template of packaging/.
include(cmake/ReleaseNotes.cmake)
include(cmake/GuidePages.cmake)

# Reversed domain and name of the program: what a window announces where it can say who it belongs to.
set(ROTUNDA_ID example.rotunda.rotunda)
set(ROTUNDA_VENDOR Corvane)
set(ROTUNDA_MAINTAINER "${ROTUNDA_VENDOR} <studio@rotunda.example>")
set(ROTUNDA_MIME_TYPE application/x-rotunda-project)
string(REPLACE / - ROTUNDA_MIME_ICON ${ROTUNDA_MIME_TYPE})

set(ROTUNDA_DATADIR ${CMAKE_INSTALL_DATADIR}/rotunda)
set(ROTUNDA_FULL_DATADIR ${CMAKE_INSTALL_FULL_DATADIR}/rotunda)
set(ROTUNDA_STARTER_DIR ${CMAKE_INSTALL_LIBEXECDIR}/rotunda)
set(ROTUNDA_STARTER ${CMAKE_INSTALL_FULL_LIBEXECDIR}/rotunda/start)
file(RELATIVE_PATH ROTUNDA_STARTER_TO_BIN /${ROTUNDA_STARTER_DIR} /${CMAKE_INSTALL_BINDIR})
file(RELATIVE_PATH ROTUNDA_STARTER_TO_EXAMPLES /${ROTUNDA_STARTER_DIR} /${ROTUNDA_DATADIR}/examples)
file(RELATIVE_PATH ROTUNDA_STARTER_TO_DOC /${ROTUNDA_STARTER_DIR} /${CMAKE_INSTALL_DOCDIR})
rotunda_read_release_notes()

set(packaging ${PROJECT_BINARY_DIR}/packaging)
foreach(template
    share/applications/rotunda.desktop
    share/metainfo/rotunda.metainfo.xml
    share/mime/packages/rotunda.xml
    share/man/man1/rotunda.1
    libexec/rotunda/start)
  configure_file(packaging/${template}.in ${packaging}/${template} @ONLY)
endforeach()

# rotunda_compress(file result): file.gz beside it, made at build time, without a time stamp.
function(rotunda_compress file result)
  add_custom_command(OUTPUT ${file}.gz
    COMMAND gzip --best --no-name --keep --force ${file}
    DEPENDS ${file} VERBATIM)
  cmake_path(GET file FILENAME name)
  add_custom_target(compressed_${name} ALL DEPENDS ${file}.gz)
  set(${result} ${file}.gz PARENT_SCOPE)
endfunction()

# Folders that installing makes are everybody's to read, whatever the mask of who installs.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The program resolves what it calls when it starts, so that these tables can be read-only.
target_link_options(rotunda PRIVATE -Wl,-z,now)
install(TARGETS rotunda RUNTIME COMPONENT studio)
install(PROGRAMS ${packaging}/libexec/rotunda/start DESTINATION ${ROTUNDA_STARTER_DIR} COMPONENT studio)

install(FILES ${packaging}/share/applications/rotunda.desktop COMPONENT studio
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications RENAME ${ROTUNDA_ID}.desktop)
install(FILES ${packaging}/share/metainfo/rotunda.metainfo.xml COMPONENT studio
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo RENAME ${ROTUNDA_ID}.metainfo.xml)
install(FILES ${packaging}/share/mime/packages/rotunda.xml COMPONENT studio
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME ${ROTUNDA_ID}.xml)
foreach(icon scalable/apps/rotunda.svg 256x256/apps/rotunda.png)
  cmake_path(GET icon PARENT_PATH folder)
  cmake_path(GET icon EXTENSION ending)
  install(FILES packaging/share/icons/hicolor/${icon} COMPONENT studio
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${folder} RENAME ${ROTUNDA_ID}${ending})
endforeach()
foreach(icon scalable/mimetypes/rotunda-project.svg 256x256/mimetypes/rotunda-project.png)
  cmake_path(GET icon PARENT_PATH folder)
  cmake_path(GET icon EXTENSION ending)
  install(FILES packaging/share/icons/hicolor/${icon} COMPONENT studio
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${folder} RENAME ${ROTUNDA_MIME_ICON}${ending})
endforeach()

rotunda_compress(${packaging}/share/man/man1/rotunda.1 manual)
install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT studio)

# The networks; the programs among the examples belong to the libraries.
file(GLOB networks CONFIGURE_DEPENDS examples/*/vek_input.xml)
foreach(network IN LISTS networks)
  cmake_path(GET network PARENT_PATH folder)
  install(DIRECTORY ${folder} DESTINATION ${ROTUNDA_DATADIR}/examples COMPONENT studio)
endforeach()

file(GLOB schemas CONFIGURE_DEPENDS formats/*.yang)
install(FILES ${schemas} DESTINATION ${CMAKE_INSTALL_DATADIR}/yang/modules/rotunda COMPONENT studio)

rotunda_add_guide_pages(guide_pages)
install(FILES ${guide_pages} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT studio)
install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT studio)

include(cmake/RotundaDevelopment.cmake)
include(cmake/RotundaPackages.cmake)
