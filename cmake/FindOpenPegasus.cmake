# Finds the provider libraries of an installed or built OpenPegasus.
#
# Looked for in PEGASUS_ROOT (a source tree or an installation; headers in src/, include/ or
# usr/include) and PEGASUS_HOME (a build's output; libraries in lib/ or lib64/), both CMake or
# environment variables, then in the system's paths, where the distributions put them (package
# tog-pegasus-devel in Fedora, RHEL and SUSE).
#
# PEGASUS_DEFINITIONS may name further definitions ("A;B=1"): the library's interface depends on how
# it was built.
#
# Sets OpenPegasus_FOUND and OpenPegasus_VERSION ("unknown" when the installation does not say), and
# defines the target OpenPegasus::provider. Sets OpenPegasus_SERVER_HOME to the PEGASUS_HOME that has a
# server with its tools and a repository, so that tests can start one of their own; empty if none has.
include(FindPackageHandleStandardArgs)

set(_roots ${PEGASUS_ROOT} $ENV{PEGASUS_ROOT})
set(_homes ${PEGASUS_HOME} $ENV{PEGASUS_HOME} ${_roots})

find_path(OpenPegasus_INCLUDE_DIR Pegasus/Provider/CIMInstanceProvider.h
          HINTS ${_roots} PATH_SUFFIXES src include usr/include)
foreach(_library common provider)
  find_library(OpenPegasus_${_library}_LIBRARY
               NAMES peg${_library} libpeg${_library}.so.1
               HINTS ${_homes} PATH_SUFFIXES lib lib64 usr/lib64)
endforeach()

# Only a source tree says its version in words.
set(OpenPegasus_VERSION unknown)
if(EXISTS ${OpenPegasus_INCLUDE_DIR}/Pegasus/Common/PegasusVersion.h)
  file(STRINGS ${OpenPegasus_INCLUDE_DIR}/Pegasus/Common/PegasusVersion.h _version
       REGEX "^ *# *define +PEGASUS_PRODUCT_VERSION +\"")
  if(_version MATCHES "\"([^\"]+)\"")
    set(OpenPegasus_VERSION ${CMAKE_MATCH_1})
  endif()
endif()

set(OpenPegasus_SERVER_HOME "")
foreach(_home ${PEGASUS_HOME} $ENV{PEGASUS_HOME})
  if(NOT OpenPegasus_SERVER_HOME AND EXISTS ${_home}/bin/cimserver AND EXISTS ${_home}/bin/cimmof
     AND EXISTS ${_home}/bin/cimprovider AND EXISTS ${_home}/bin/cimcli
     AND EXISTS ${_home}/repository)
    set(OpenPegasus_SERVER_HOME ${_home})
  endif()
endforeach()

# The headers want to be told where they are compiled for.
set(_platforms
    "x86_64|AMD64=LINUX_X86_64_GNU" "i[3-6]86=LINUX_IX86_GNU" "aarch64|arm64=LINUX_AARCH64_GNU"
    "ppc64.*|powerpc64.*=LINUX_PPC64_GNU" "ppc|powerpc=LINUX_PPC_GNU"
    "s390x=LINUX_ZSERIES64_GNU" "s390=LINUX_ZSERIES_GNU" "ia64=LINUX_IA64_GNU")
set(_platform "")
foreach(_row ${_platforms})
  string(REGEX MATCH "^(.*)=(.*)$" _ "${_row}")
  set(_name ${CMAKE_MATCH_2})
  if(NOT _platform AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(${CMAKE_MATCH_1})$")
    set(_platform PEGASUS_PLATFORM_${_name})
  endif()
endforeach()

find_package_handle_standard_args(
  OpenPegasus
  REQUIRED_VARS OpenPegasus_INCLUDE_DIR OpenPegasus_common_LIBRARY OpenPegasus_provider_LIBRARY
                _platform
  VERSION_VAR OpenPegasus_VERSION)

if(OpenPegasus_FOUND AND NOT TARGET OpenPegasus::provider)
  add_library(OpenPegasus::provider INTERFACE IMPORTED)
  target_include_directories(OpenPegasus::provider SYSTEM INTERFACE ${OpenPegasus_INCLUDE_DIR})
  target_compile_definitions(OpenPegasus::provider INTERFACE
                             ${_platform} THREAD_SAFE ${PEGASUS_DEFINITIONS})
  target_link_libraries(OpenPegasus::provider INTERFACE
                        ${OpenPegasus_provider_LIBRARY} ${OpenPegasus_common_LIBRARY})
endif()
mark_as_advanced(OpenPegasus_INCLUDE_DIR OpenPegasus_common_LIBRARY OpenPegasus_provider_LIBRARY)
