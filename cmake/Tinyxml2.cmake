# The release from which on documents have been compared byte by byte. A newer one of any number will do, which
# the library's own check of versions would refuse.
find_package(tinyxml2 REQUIRED)
if(tinyxml2_VERSION VERSION_LESS 9.0)
  message(FATAL_ERROR "tinyxml2 ${tinyxml2_VERSION} is too old: 9.0 or newer is needed")
endif()
