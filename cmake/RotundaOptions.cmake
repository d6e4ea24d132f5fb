# Flags that every target of the project carries, in one place.
option(ROTUNDA_TESTS "Build the tests and the tour" ${PROJECT_IS_TOP_LEVEL})
option(ROTUNDA_BENCH "Build the benches" ${PROJECT_IS_TOP_LEVEL})
option(ROTUNDA_WERROR "Make warnings in the project's own code errors" ${PROJECT_IS_TOP_LEVEL})
option(ROTUNDA_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(ROTUNDA_FUZZ "Link the targets in fuzz/ with libFuzzer, all under the sanitizers; needs clang" OFF)
option(ROTUNDA_COVERAGE "Build with coverage instrumentation" OFF)
option(ROTUNDA_PRECOMPILE "Parse the headers of Qt once for many tests; needs gcc" ON)
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  set(ROTUNDA_PRECOMPILE OFF)
endif()

find_program(CCACHE ccache)
if(CCACHE AND ROTUNDA_PRECOMPILE)
  # A source that uses parsed headers is only kept when these two are said to be harmless, as they are here.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
  add_compile_options(-fpch-preprocess)
elseif(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(rotunda_options INTERFACE)
target_include_directories(rotunda_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(rotunda_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Qt's logging macros leave out their optional arguments, which C++20 allows and both compilers take.
  target_compile_options(rotunda_options INTERFACE -Wno-gnu-zero-variadic-macro-arguments)
endif()
if(ROTUNDA_WERROR)
  target_compile_options(rotunda_options INTERFACE -Werror)
endif()
target_compile_definitions(rotunda_options INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_URL_CAST_FROM_STRING
  QT_STRICT_ITERATORS)

if(ROTUNDA_SANITIZE)
  target_compile_options(rotunda_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(rotunda_options INTERFACE -fsanitize=address,undefined)
endif()
if(ROTUNDA_FUZZ)
  target_compile_options(rotunda_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(rotunda_options INTERFACE -fsanitize=address,undefined)
endif()
if(ROTUNDA_COVERAGE)
  target_compile_options(rotunda_options INTERFACE --coverage)
  target_link_options(rotunda_options INTERFACE --coverage)
endif()
