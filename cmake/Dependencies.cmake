# What the project is built with; tools/set-up installs it.
find_package(Qt5 5.14 REQUIRED COMPONENTS Core Gui Widgets)
if(ROTUNDA_TESTS OR ROTUNDA_BENCH)
  find_package(Qt5 5.14 REQUIRED COMPONENTS Test)
endif()
include(cmake/Tinyxml2.cmake)
include(cmake/SatSolver.cmake)

# The import and export pictures are WebP. The program builds without the plugin that reads them and then
# shows empty buttons, so a missing one is told now.
get_target_property(plugin Qt5::QGifPlugin LOCATION)
cmake_path(GET plugin PARENT_PATH folder)
file(GLOB webp ${folder}/*qwebp*)
if(NOT webp)
  message(WARNING "no WebP plugin in ${folder}: the studio's import and export buttons will have no "
    "picture (package qt5-image-formats-plugins)")
endif()
