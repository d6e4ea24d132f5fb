# rotunda_add_test(name SOURCES ... LIBRARIES ... [PLATFORM offscreen|xcb] [TIMEOUT seconds])
#
# One Qt Test program a subject. Tests that need no real window system run offscreen; PLATFORM xcb
# takes the display that the caller of ctest provides.
function(rotunda_add_test name)
  cmake_parse_arguments(TEST "" "PLATFORM;TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} Qt5::Test)
  add_test(NAME ${name} COMMAND ${name})
  if(NOT TEST_PLATFORM)
    set(TEST_PLATFORM offscreen)
  endif()
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${TEST_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=${TEST_PLATFORM};LC_ALL=C.UTF-8")
endfunction()
