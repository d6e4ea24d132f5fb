# What a program over the libraries needs: the package that find_package(Rotunda) finds, and programs to start
# from. The libraries themselves are installed where they are made.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Rotunda)
configure_package_config_file(cmake/RotundaConfig.cmake.in ${packaging}/RotundaConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${packaging}/RotundaConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT RotundaTargets NAMESPACE Rotunda:: DESTINATION ${package_dir} COMPONENT development)
install(FILES
  ${packaging}/RotundaConfig.cmake
  ${packaging}/RotundaConfigVersion.cmake
  cmake/SatSolver.cmake
  DESTINATION ${package_dir} COMPONENT development)

file(GLOB programs CONFIGURE_DEPENDS examples/*/main.cpp)
foreach(program IN LISTS programs)
  cmake_path(GET program PARENT_PATH folder)
  install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/librotunda-dev/examples
    COMPONENT development)
endforeach()
