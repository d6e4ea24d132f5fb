# Tests carry labels: "fast" for what takes seconds, "slow" for the rest, and "display" for what needs a
# window system.

# rotunda_add_test(name SOURCES ... LIBRARIES ... [SLOW] [PLATFORM offscreen|xcb] [TIMEOUT seconds])
#
# One Qt Test program a subject. Tests that need no real window system run offscreen; PLATFORM xcb
# takes the display that the caller of ctest provides.
function(rotunda_add_test name)
  cmake_parse_arguments(TEST "SLOW" "PLATFORM;TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
  rotunda_add_test_program(${name} ${ARGN})
  add_test(NAME ${name} COMMAND ${name})
  if(TEST_SLOW)
    set(labels slow)
  else()
    set(labels fast)
  endif()
  if(NOT TEST_PLATFORM)
    set(TEST_PLATFORM offscreen)
  elseif(TEST_PLATFORM STREQUAL xcb)
    list(APPEND labels display)
  endif()
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${TEST_TIMEOUT}
    LABELS "${labels}"
    ENVIRONMENT "QT_QPA_PLATFORM=${TEST_PLATFORM};LC_ALL=C.UTF-8")
endfunction()

# rotunda_add_shards(name SHARDS count NETWORKS each SOURCES ... LIBRARIES ...)
#
# One program, run as so many tests; each goes through so many random inputs, from seed 1 on, and may
# leave its counts behind. The program by itself takes ROTUNDA_SEED and ROTUNDA_NETWORKS.
function(rotunda_add_shards name)
  cmake_parse_arguments(TEST "" "SHARDS;NETWORKS" "SOURCES;LIBRARIES" ${ARGN})
  rotunda_add_test_program(${name} ${ARGN})
  set(tallies ${CMAKE_CURRENT_BINARY_DIR}/${name}.tallies)
  foreach(shard RANGE 1 ${TEST_SHARDS})
    math(EXPR seed "(${shard} - 1) * ${TEST_NETWORKS} + 1")
    add_test(NAME ${name}-${shard} COMMAND ${name})
    set_tests_properties(${name}-${shard} PROPERTIES
      TIMEOUT 900
      LABELS slow
      FIXTURES_SETUP ${name}
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;ROTUNDA_SEED=${seed};\
ROTUNDA_NETWORKS=${TEST_NETWORKS};ROTUNDA_TALLY=${tallies}/${shard}")
  endforeach()
endfunction()

# rotunda_judge_shards(name SHARDS test SOURCES ... LIBRARIES ...)
#
# A test that runs when all shards of that test have passed, and reads what they have left behind.
function(rotunda_judge_shards name)
  cmake_parse_arguments(TEST "" "SHARDS" "SOURCES;LIBRARIES" ${ARGN})
  rotunda_add_test_program(${name} ${ARGN})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 60
    LABELS slow
    FIXTURES_REQUIRED ${TEST_SHARDS}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;\
ROTUNDA_TALLIES=${CMAKE_CURRENT_BINARY_DIR}/${TEST_SHARDS}.tallies")
endfunction()

function(rotunda_add_test_program name)
  cmake_parse_arguments(TEST "SLOW" "PLATFORM;TIMEOUT;SHARDS;NETWORKS" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} Qt5::Test)
  add_dependencies(rotunda_generated_sources ${name}_autogen)
  rotunda_reuse_test_headers(${name})
endfunction()

# rotunda_reuse_test_headers(target)
#
# Most of a test's compile time are the headers of Qt. They are parsed once for those tests that have windows,
# and once for the others, which must not come by a graphical header. The program's own sources do
# without, so that each is known to include what it uses; for the tests the style check sees to that.
function(rotunda_reuse_test_headers target)
  if(NOT ROTUNDA_PRECOMPILE)
    return()
  endif()
  # It is empty, and done in no time without.
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp
    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  set(links "")
  rotunda_collect_links(${target} links)
  if(rotunda_test_gui IN_LIST links)
    target_precompile_headers(${target} REUSE_FROM rotunda_test_gui)
  elseif(rotunda_test_core IN_LIST links)
    target_precompile_headers(${target} REUSE_FROM rotunda_test_core)
  endif()
endfunction()
