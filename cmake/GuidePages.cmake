# rotunda_add_guide_pages(result)
#
# The pages of docs/ for those who use the program, as HTML made at build time. Where the converter is
# missing they are installed as they are written. Sets result to the files to install.
find_program(ROTUNDA_CMARK cmark-gfm)
find_program(ROTUNDA_PYTHON python3)

function(rotunda_add_guide_pages result)
  file(GLOB sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/docs/guide*.md ${PROJECT_SOURCE_DIR}/docs/documents.md)
  if(NOT ROTUNDA_CMARK OR NOT ROTUNDA_PYTHON)
    message(STATUS "cmark-gfm or python3 is missing: the guide is installed as Markdown")
    set(${result} ${sources} PARENT_SCOPE)
    return()
  endif()
  set(pages "")
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM LAST_ONLY name)
    set(page ${PROJECT_BINARY_DIR}/docs/${name}.html)
    add_custom_command(OUTPUT ${page}
      COMMAND ${ROTUNDA_PYTHON} ${PROJECT_SOURCE_DIR}/tools/guide-page ${ROTUNDA_CMARK} ${source} ${page}
      DEPENDS ${source} ${PROJECT_SOURCE_DIR}/tools/guide-page VERBATIM)
    list(APPEND pages ${page})
  endforeach()
  add_custom_target(guide_pages ALL DEPENDS ${pages})
  set(${result} ${pages} PARENT_SCOPE)
endfunction()
