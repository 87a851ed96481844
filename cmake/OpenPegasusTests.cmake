# Tests that run with the CIM server of an OpenPegasus installation, in each that there is: the homes
# in PEGASUS_TEST_HOMES (a CMake or environment variable, separated by colons), or, without any, the
# home of the installation that the modules are built against. All must be of its kind (version and
# options of the build), as they load these modules.
set(OPENPEGASUS_TEST_HOMES "")
if(OpenPegasus_FOUND)
  set(_homes ${PEGASUS_TEST_HOMES} $ENV{PEGASUS_TEST_HOMES})
  if(NOT _homes)
    set(_homes ${OpenPegasus_HOME})
  endif()
  string(REPLACE ":" ";" OPENPEGASUS_TEST_HOMES "${_homes}")
endif()
foreach(_home IN LISTS OPENPEGASUS_TEST_HOMES)
  foreach(_part bin/cimserver bin/cimmof bin/cimprovider bin/cimcli repository)
    if(NOT EXISTS ${_home}/${_part})
      message(FATAL_ERROR "PEGASUS_TEST_HOMES: ${_home} is no home of an OpenPegasus server: it has "
                          "no ${_part}")
    endif()
  endforeach()
  message(STATUS "Tests run with the OpenPegasus server in ${_home}, too")
endforeach()
if(NOT OPENPEGASUS_TEST_HOMES)
  message(STATUS "No test runs with an OpenPegasus server: there is no home of one (programs and "
                 "repository)")
endif()

# add_openpegasus_test(NAME COMMAND...): the test NAME for each home, with "--home HOME" behind the
# command. Its name has the folder that the home is in, which tells installations apart.
function(add_openpegasus_test name)
  foreach(home IN LISTS OPENPEGASUS_TEST_HOMES)
    cmake_path(GET home PARENT_PATH folder)
    cmake_path(GET folder FILENAME label)
    add_test(NAME "${name}(${label})" COMMAND ${ARGN} --home ${home})
    set_tests_properties("${name}(${label})" PROPERTIES TIMEOUT 1800)
  endforeach()
endfunction()
