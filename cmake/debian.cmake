# The Debian packages that cpack makes of the three installed components. What only they have (copyright, changelog,
# symbols) is in packaging/debian/.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The quillet maintainers <quillet@lists.example.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL programs runtime development)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/files.cmake)
set(CPACK_QUILLET_SOURCE_DIR ${PROJECT_SOURCE_DIR})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# quillet_debian(COMPONENT PACKAGE SECTION DESCRIPTION): the first line of a description is the summary.
macro(quillet_debian COMPONENT PACKAGE SECTION DESCRIPTION)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${PACKAGE})
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${SECTION})
    set(CPACK_COMPONENT_${COMPONENT}_DESCRIPTION "${DESCRIPTION}")
endmacro()

quillet_debian(PROGRAMS quillet utils "files and settings of a mobile phone that is attached by USB
A plug-in that shows the phone's flash file system in Double Commander, and
programs for the command line: wfxhost copies and lists files, qdiag asks for
versions, settings, logs and messages, quillet-mount shows the phone as a
folder, and simulated-handset is a phone to try them on.")
quillet_debian(RUNTIME libquillet0 libs "client of a mobile phone's diagnostic protocol (library)
The library exchanges packets with a phone over its serial port: files of its
flash file system, NV items, logs, messages, and factory tests of its radio.")
quillet_debian(DEVELOPMENT libquillet-dev libdevel "client of a mobile phone's diagnostic protocol (headers)
Headers, a CMake package, a pkg-config file and examples for C++20 programs
that use libquillet.")

set(this_version "(= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "libquillet0 ${this_version}")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS "fuse3")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libquillet0 ${this_version}, libc6-dev, libstdc++-12-dev | libstdc++-dev")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/install/shlibs
    ${PROJECT_SOURCE_DIR}/packaging/debian/symbols ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
file(WRITE ${CMAKE_BINARY_DIR}/install/shlibs
    "libquillet ${QUILLET_INTERFACE} libquillet${QUILLET_INTERFACE} (>= ${PROJECT_VERSION})\n")
include(CPack)
