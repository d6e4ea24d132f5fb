# rotunda_read_release_notes()
#
# Releases and their notes are told once, in CHANGELOG.md. Sets, in the caller:
#   ROTUNDA_RELEASE_DATE       the newest release's day
#   ROTUNDA_RELEASES_XML       <release> elements for the metainfo
#   ROTUNDA_DEBIAN_CHANGELOG   the packages' changelog
# Stops when the newest release is not the project's version.
function(rotunda_read_release_notes)
  set(file ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} text)
  string(REPLACE ";" "\\;" text "${text}")
  string(REPLACE "\n  " " " text "${text}") # a note that goes on in the next line
  string(REPLACE "\n" ";" lines "${text}")
  set(version "")
  set(date "")
  set(newest "")
  set(newest_date "")
  set(xml "")
  set(debian "")
  foreach(line IN LISTS lines)
    if(line MATCHES "^## ([0-9.]+) \\(([0-9-]+)\\)$")
      set(next_version ${CMAKE_MATCH_1})
      set(next_date ${CMAKE_MATCH_2})
      rotunda_end_release()
      set(version ${next_version})
      set(date ${next_date})
      if(newest STREQUAL "")
        set(newest ${version})
        set(newest_date ${date})
      endif()
      string(APPEND xml
        "    <release version=\"${version}\" date=\"${date}\">\n      <description>\n        <ul>\n")
      string(APPEND debian "rotunda (${version}) unstable; urgency=medium\n\n")
    elseif(line MATCHES "^- (.+)$" AND version)
      string(REGEX REPLACE "[`*]" "" note "${CMAKE_MATCH_1}")
      rotunda_wrap("  * ${note}" wrapped)
      string(APPEND debian "${wrapped}\n")
      string(REPLACE "&" "&amp;" note "${note}")
      string(REPLACE "<" "&lt;" note "${note}")
      string(APPEND xml "          <li>${note}</li>\n")
    endif()
  endforeach()
  rotunda_end_release()
  if(NOT newest VERSION_EQUAL PROJECT_VERSION)
    message(FATAL_ERROR "CHANGELOG.md begins with ${newest}, the project is ${PROJECT_VERSION}")
  endif()
  string(STRIP "${debian}" debian)
  string(REGEX REPLACE "\n$" "" xml "${xml}")
  set(ROTUNDA_RELEASE_DATE ${newest_date} PARENT_SCOPE)
  set(ROTUNDA_RELEASES_XML "${xml}" PARENT_SCOPE)
  set(ROTUNDA_DEBIAN_CHANGELOG "${debian}" PARENT_SCOPE)
endfunction()

# Closes the release that is being read, if there is one.
macro(rotunda_end_release)
  if(version)
    string(APPEND xml "        </ul>\n      </description>\n    </release>\n")
    rotunda_mail_date(${date} mail_date)
    string(APPEND debian "\n -- ${ROTUNDA_MAINTAINER}  ${mail_date}\n\n")
  endif()
endmacro()

# rotunda_wrap(text result): lines of at most 78 characters, those behind the first one set in.
function(rotunda_wrap text result)
  string(REGEX MATCHALL " *[^ ]+" words "${text}")
  set(wrapped "")
  set(line "")
  foreach(word IN LISTS words)
    string(LENGTH "${line}${word}" length)
    if(length GREATER 78)
      string(APPEND wrapped "${line}\n")
      set(line "   ")
    endif()
    string(APPEND line "${word}")
  endforeach()
  set(${result} "${wrapped}${line}" PARENT_SCOPE)
endfunction()

# A day as mails write it, at noon UTC.
function(rotunda_mail_date day result)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C TZ=UTC
      date "--date=${day} 12:00 UTC" "+%a, %d %b %Y %H:%M:%S +0000"
    OUTPUT_VARIABLE text OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${result} ${text} PARENT_SCOPE)
endfunction()
