# Run by cpack on what it is about to pack. Debian's own changelog, dated as the sources are, comes to
# its packages; manual pages and changelogs are packed compressed, and without a time stamp.
if(CPACK_GENERATOR STREQUAL DEB)
  execute_process(COMMAND git -C ${CMAKE_CURRENT_LIST_DIR} log -1 --format=%aD
                  OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT date)
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  endif()
  file(GLOB directories ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*)
  foreach(directory IN LISTS directories)
    cmake_path(GET directory FILENAME package)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.Debian.in ${directory}/changelog.Debian @ONLY)
  endforeach()
endif()

file(GLOB_RECURSE staged LIST_DIRECTORIES false ${CPACK_TEMPORARY_DIRECTORY}/*)
list(FILTER staged INCLUDE REGEX "/share/(man/man[0-9]/[^/]+[.][0-9]|doc/[^/]+/changelog[^/]*)$")
list(FILTER staged EXCLUDE REGEX "[.]gz$")
foreach(file IN LISTS staged)
  execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
