# CPack: a package of each kind from each of the components "provider", "cimhost" and "walk".
set(PACKAGE_RELEASE 1)
set(PACKAGE_CONTACT "Orvex Systems <packages@orvex-systems.example>" CACHE STRING
    "Who maintains the packages")

set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_PACKAGE_NAME serverprofile)
set(CPACK_PACKAGE_VENDOR "Orvex Systems")
set(CPACK_PACKAGE_CONTACT ${PACKAGE_CONTACT})
# Each component has its own; what is said here would be put before it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_VERBATIM_VARIABLES TRUE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/Staged.cmake)

set(cimhost_summary "Small CIM server for provider modules")
set(cimhost_text
"Hosts provider modules written for OpenPegasus (\"C++Default\") where no
OpenPegasus is installed: reads classes and registrations from MOF files and
speaks CIM-XML over HTTP and HTTPS, to everybody on this machine or to users
with passwords. For the desk and for tests: nothing persistent. Holds a
sample switch, and a service, which is not started unless asked for.")
set(provider_summary "Server profile provider module for a CIM server")
set(provider_text
"Publishes the management Server profile of a storage-network switch: its
registered profiles, the host of the CIM server, the software identity and
the associations between these.")
if(module_for STREQUAL openpegasus)
  string(APPEND provider_text "\nThis module is for an installed OpenPegasus.")
else()
  string(APPEND provider_text "\nThis module is for the CIM server cimhost.")
endif()
set(walk_summary "Follow the Server profile of a switch, and judge it")
set(walk_text
"Asks a CIM server what a storage management client asks about the management
Server profile of a switch, follows each path as the server gives it, and says
which answers are wrong: as text, as JSON, or as a page with a picture.")
foreach(component package IN ZIP_LISTS components packages)
  string(TOUPPER ${component} name)
  set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${name}_DESCRIPTION "${${component}_summary}\n${${component}_text}")
  set(CPACK_RPM_${name}_PACKAGE_NAME ${package})
  set(CPACK_RPM_${name}_PACKAGE_SUMMARY ${${component}_summary})
  set(CPACK_RPM_${name}_PACKAGE_DESCRIPTION ${${component}_text})
endforeach()

# --- DEB

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Libraries that no package is known to have: cimhost's own, and an OpenPegasus of one's own.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
if(OpenPegasus_FOUND)
  cmake_path(GET OpenPegasus_common_LIBRARY PARENT_PATH pegasus_libraries)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${pegasus_libraries})
endif()

set(CPACK_DEBIAN_PROVIDER_PACKAGE_SUGGESTS serverprofile-walk)
set(CPACK_DEBIAN_CIMHOST_PACKAGE_SUGGESTS "${provider_package}, sblim-wbemcli")
set(CPACK_DEBIAN_WALK_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_WALK_PACKAGE_DEPENDS "python3 (>= 3.9)")
# For the picture alone, and for who repeats a question.
set(CPACK_DEBIAN_WALK_PACKAGE_RECOMMENDS graphviz)
set(CPACK_DEBIAN_WALK_PACKAGE_SUGGESTS sblim-wbemcli)
if(module_for STREQUAL embedded)
  # The runtime library is the server's, and keeps no promises from one version to the next.
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  set(CPACK_COMPONENT_PROVIDER_DEPENDS cimhost)
endif()

# --- RPM: what is needed is found by rpmbuild itself

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_RELEASE ${PACKAGE_RELEASE})
set(CPACK_RPM_PACKAGE_LICENSE Proprietary)
set(CPACK_RPM_PACKAGE_GROUP "System Environment/Daemons")
# The scripts know where the files are. Links by build ID are for packages of debug information.
set(CPACK_RPM_PACKAGE_RELOCATABLE FALSE)
set(CPACK_RPM_SPEC_MORE_DEFINE "%define _build_id_links none
%define packager ${PACKAGE_CONTACT}
%define __provides_exclude_from ^/${provider_directory}/.*$")
# Directories that belong to the system.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/sbin /usr/lib64 /usr/libexec /usr/lib/systemd /usr/lib/systemd/system /usr/lib/sysusers.d
    /usr/share/man /usr/share/man/man1 /usr/share/man/man8 /usr/share/doc)

set(CPACK_RPM_WALK_PACKAGE_ARCHITECTURE noarch)
set(CPACK_RPM_WALK_PACKAGE_REQUIRES "python3 >= 3.9")

# --- what is run at installation and removal

file(READ registration.sh REGISTRATION)
string(CONFIGURE "${REGISTRATION}" REGISTRATION @ONLY)
foreach(script postinst prerm postrm post preun)
  configure_file(${script}.in scripts/${script} @ONLY USE_SOURCE_PERMISSIONS)
endforeach()
set(scripts ${CMAKE_CURRENT_BINARY_DIR}/scripts)
set(CPACK_DEBIAN_PROVIDER_PACKAGE_CONTROL_EXTRA ${scripts}/postinst ${scripts}/prerm
    ${scripts}/postrm)
set(CPACK_RPM_PROVIDER_POST_INSTALL_SCRIPT_FILE ${scripts}/post)
set(CPACK_RPM_PROVIDER_PRE_UNINSTALL_SCRIPT_FILE ${scripts}/preun)

set(service ${CMAKE_CURRENT_SOURCE_DIR}/service)
set(CPACK_DEBIAN_CIMHOST_PACKAGE_CONTROL_EXTRA ${service}/postinst ${service}/prerm
    ${service}/postrm ${service}/conffiles)
set(CPACK_RPM_CIMHOST_POST_INSTALL_SCRIPT_FILE ${service}/post)
set(CPACK_RPM_CIMHOST_PRE_UNINSTALL_SCRIPT_FILE ${service}/preun)
set(CPACK_RPM_CIMHOST_POST_UNINSTALL_SCRIPT_FILE ${service}/postun)
set(CPACK_RPM_CIMHOST_USER_FILELIST "%config(noreplace) /etc/cimhost/cimhost.conf")

include(CPack)
