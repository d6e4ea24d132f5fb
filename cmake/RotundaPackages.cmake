# Debian packages: `rotunda` for those who use the studio, `librotunda-dev` for those who write programs over
# the libraries. tools/make-packages configures, builds and checks them.
#
# The changelog is made from CHANGELOG.md, the copyright is NOTICE.
file(CONFIGURE OUTPUT ${packaging}/changelog CONTENT "@ROTUNDA_DEBIAN_CHANGELOG@\n" @ONLY)
configure_file(NOTICE ${packaging}/copyright COPYONLY)
rotunda_compress(${packaging}/changelog changelog)
install(FILES ${changelog} ${packaging}/copyright
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/rotunda COMPONENT studio)
install(FILES ${changelog} ${packaging}/copyright
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/librotunda-dev COMPONENT development)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME rotunda)
set(CPACK_PACKAGE_VENDOR ${ROTUNDA_VENDOR})
set(CPACK_PACKAGE_CONTACT ${ROTUNDA_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL studio development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PROJECT_HOMEPAGE_URL})

# The first line of a description is the project's, before what follows here.
set(CPACK_DEBIAN_STUDIO_PACKAGE_NAME rotunda)
set(CPACK_DEBIAN_STUDIO_PACKAGE_SECTION science)
set(CPACK_DEBIAN_STUDIO_PACKAGE_SHLIBDEPS ON)
# Plugins and texts, which no symbol leads to.
set(CPACK_DEBIAN_STUDIO_PACKAGE_DEPENDS "qt5-image-formats-plugins, qttranslations5-l10n")
set(CPACK_DEBIAN_STUDIO_PACKAGE_RECOMMENDS
  "fonts-noto-cjk | fonts-wqy-zenhei, fonts-liberation, xdg-user-dirs, xdg-utils")
set(CPACK_DEBIAN_STUDIO_DESCRIPTION
  "Rotunda draws networks of hosts, switches and links, defines virtual links
and flows, and plans a cyclic schedule in which no two transmissions share a
slot on a port. Schedules can be checked, and windows narrowed until there is
a plan. Examples, a guide and schemas of the documents come with it.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME librotunda-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev, libtinyxml2-dev, libcadical-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
  "This package holds static libraries with headers and a package for CMake: the
planning, the check of plans by their documents, and the synthesis of windows.
Programs over them come in source. None of them needs a screen.")

include(CPack)
