# What "cmake --install" copies, in three components: runtime (the library), development (what programs that use it are
# built with), programs (everything else).

install(TARGETS quillet_library EXPORT quilletTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

quillet_public_headers(headers)
foreach(header ${headers})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillet/${folder} COMPONENT development)
endforeach()

include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/quillet)
configure_package_config_file(packaging/quilletConfig.cmake.in ${CMAKE_BINARY_DIR}/install/quilletConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/install/quilletConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(EXPORT quilletTargets NAMESPACE quillet:: DESTINATION ${package_folder} COMPONENT development)
install(FILES ${CMAKE_BINARY_DIR}/install/quilletConfig.cmake ${CMAKE_BINARY_DIR}/install/quilletConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT development)

# The one file that knows the prefix, which is chosen when installing. The Windows SDK is unpacked anywhere.
set(QUILLET_PREFIX "@QUILLET_PREFIX@")
if(WIN32)
    set(QUILLET_PREFIX "\${pcfiledir}/../..")
endif()
configure_file(packaging/quillet.pc.in ${CMAKE_BINARY_DIR}/install/quillet.pc.in @ONLY)
install(CODE "set(QUILLET_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
configure_file(\"${CMAKE_BINARY_DIR}/install/quillet.pc.in\" \"${CMAKE_BINARY_DIR}/install/quillet.pc\" @ONLY)"
    COMPONENT development)
install(FILES ${CMAKE_BINARY_DIR}/install/quillet.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

if(WIN32)
    return() # the rest is for Linux
endif()

install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libquillet-dev COMPONENT development OPTIONAL)

install(TARGETS quillet LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/quillet COMPONENT programs)
set(programs wfxhost qdiag simulated-handset)
if(TARGET quillet-mount)
    list(APPEND programs quillet-mount)
endif()
install(TARGETS ${programs} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)

# Manual pages are installed compressed. Those of sanitized programs are not made.
set(documents ${CMAKE_BINARY_DIR}/documents)
if(NOT QUILLET_SANITIZE)
    set(pages)
    foreach(program ${programs})
        set(page ${documents}/${program}.1)
        if(program STREQUAL "quillet-mount")
            set(page ${PROJECT_SOURCE_DIR}/docs/man/${program}.1)
        else()
            install(FILES ${documents}/${program}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
                RENAME ${program} COMPONENT programs)
        endif()
        set(compressed ${CMAKE_BINARY_DIR}/install/${program}.1.gz)
        add_custom_command(OUTPUT ${compressed} COMMAND gzip -9nc ${page} > ${compressed} DEPENDS ${page} VERBATIM)
        list(APPEND pages ${compressed})
    endforeach()
    add_custom_target(manual_pages ALL DEPENDS ${pages})
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
endif()

set(rules ${CMAKE_BINARY_DIR}/install/70-quillet.rules)
set(rule_makers ${PROJECT_SOURCE_DIR}/packaging/udev-rules.sh ${PROJECT_SOURCE_DIR}/packaging/accepted-ids.sh)
add_custom_command(OUTPUT ${rules} COMMAND ${PROJECT_SOURCE_DIR}/packaging/udev-rules.sh > ${rules}
    DEPENDS ${rule_makers} ${PROJECT_SOURCE_DIR}/plugin/port_discovery.cpp VERBATIM)
add_custom_target(udev_rules ALL DEPENDS ${rules})
# udev and systemd look into lib, whatever the library folder is.
install(FILES ${rules} DESTINATION lib/udev/rules.d COMPONENT programs)
install(FILES packaging/quillet-mount.service DESTINATION lib/systemd/user COMPONENT programs)

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT programs)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT programs
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg" PATTERN "man" EXCLUDE)
