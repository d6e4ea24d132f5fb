# CaDiCaL comes as a static library and a header, with no description of its own.
find_path(CADICAL_INCLUDE_DIR cadical.hpp REQUIRED)
find_library(CADICAL_LIBRARY cadical REQUIRED)

add_library(cadical::cadical UNKNOWN IMPORTED)
set_target_properties(cadical::cadical PROPERTIES
  IMPORTED_LOCATION "${CADICAL_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${CADICAL_INCLUDE_DIR}")
