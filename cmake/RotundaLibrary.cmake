# rotunda_export_library(room HEADERS ...)
#
# Makes rotunda_ROOM a library for programs outside, named Rotunda::ROOM in the tree as well as installed. The
# headers are those that may be included; each finds the others from one folder. Flags, include paths of the
# tree and errors for warnings stay with the project: in the tree they come with rotunda_options.
function(rotunda_export_library room)
  cmake_parse_arguments(LIBRARY "" "" "HEADERS" ${ARGN})
  set(target rotunda_${room})
  add_library(Rotunda::${room} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${room})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_link_libraries(${target} PUBLIC $<BUILD_INTERFACE:rotunda_options>)
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${LIBRARY_HEADERS})
  install(TARGETS ${target} EXPORT RotundaTargets
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rotunda COMPONENT development)
endfunction()
