# Programs for people, and what they share.
file(GLOB tools_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/common/*.cpp)
list(FILTER tools_sources EXCLUDE REGEX "_(posix|windows)\\.cpp$")
add_library(tools_common STATIC ${tools_sources}
    ${PROJECT_SOURCE_DIR}/tools/common/library_name_${QUILLET_SYSTEM}.cpp
    ${PROJECT_SOURCE_DIR}/tools/common/terminal_${QUILLET_SYSTEM}.cpp)
target_include_directories(tools_common PUBLIC ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(tools_common PRIVATE quillet_options)
target_compile_definitions(tools_common PRIVATE QUILLET_VERSION="${PROJECT_VERSION}")

# quillet_program_documents(NAME): the program's manual page and bash completion, which it prints itself, in
# documents/ of the build folder.
function(quillet_program_documents name)
    if(WIN32 OR QUILLET_SANITIZE)
        return() # those programs need Windows or special settings to run
    endif()
    set(folder ${CMAKE_BINARY_DIR}/documents)
    add_custom_command(OUTPUT ${folder}/${name}.1 ${folder}/${name}.bash
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${name} --man > ${folder}/${name}.1
        COMMAND ${name} --completion > ${folder}/${name}.bash
        DEPENDS ${name} VERBATIM)
    add_custom_target(${name}_documents ALL DEPENDS ${folder}/${name}.1 ${folder}/${name}.bash)
endfunction()

# Programs find the library, and wfxhost the plug-in, in their own folder or where it is installed.
file(RELATIVE_PATH QUILLET_FROM_PROGRAMS /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
set(QUILLET_RPATH "$ORIGIN;$ORIGIN/${QUILLET_FROM_PROGRAMS}")

file(GLOB wfxhost_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/wfxhost/*.cpp)
list(FILTER wfxhost_sources EXCLUDE REGEX "/system_[a-z]+\\.cpp$")
add_executable(wfxhost ${wfxhost_sources} ${PROJECT_SOURCE_DIR}/tools/wfxhost/system_${QUILLET_SYSTEM}.cpp)
# Of the product it sees the platform's headers alone (the host interface's types), and links nothing.
target_include_directories(wfxhost PRIVATE
    $<TARGET_PROPERTY:platform,INTERFACE_INCLUDE_DIRECTORIES>)
set_source_files_properties(${PROJECT_SOURCE_DIR}/tools/wfxhost/main.cpp PROPERTIES
    COMPILE_DEFINITIONS QUILLET_PLUGIN_FOLDER="${QUILLET_FROM_PROGRAMS}/quillet")
target_link_libraries(wfxhost PRIVATE tools_common quillet_options ${CMAKE_DL_LIBS})
set_target_properties(wfxhost PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
quillet_program_documents(wfxhost)

# qdiag uses the library as any other program would: through quillet.h. On Windows that is the plug-in's file beside it.
file(GLOB qdiag_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/qdiag/*.cpp
    ${PROJECT_SOURCE_DIR}/tools/qdiag/efs/*.cpp)
add_executable(qdiag ${qdiag_sources})
target_include_directories(qdiag PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(qdiag PRIVATE tools_common ${QUILLET_LIBRARY} quillet_options)
set_target_properties(qdiag PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}
    INSTALL_RPATH "${QUILLET_RPATH}" BUILD_WITH_INSTALL_RPATH ON)
quillet_program_documents(qdiag)
# The commands that read and write archives.
if(NOT WIN32)
    find_package(LibArchive)
endif()
if(LibArchive_FOUND)
    file(GLOB archive_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/qdiag/archive/*.cpp)
    target_sources(qdiag PRIVATE ${archive_sources})
    target_link_libraries(qdiag PRIVATE LibArchive::LibArchive)
else()
    target_sources(qdiag PRIVATE ${PROJECT_SOURCE_DIR}/tools/qdiag/without_archive/commands.cpp)
    message(STATUS "qdiag is built without efs backup and efs restore: they need libarchive (libarchive-dev)")
endif()

if(WIN32)
    # A plain Windows has none of the compiler's libraries.
    target_link_options(wfxhost PRIVATE -static -s)
    target_link_options(qdiag PRIVATE -static -s)
endif()

# The simulated handset on a pseudo-terminal.
if(NOT WIN32)
    add_executable(simulated-handset ${PROJECT_SOURCE_DIR}/tools/simulated_handset/main.cpp)
    target_link_libraries(simulated-handset PRIVATE tools_common handset)
    set_target_properties(simulated-handset PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    quillet_program_documents(simulated-handset)
endif()

# quillet-mount uses the library in the same way. What it does on the phone (mount_parts) is apart from libfuse 3, so
# that tests reach it; nothing but the program needs that library.
if(NOT WIN32)
    set(mount_program ${PROJECT_SOURCE_DIR}/tools/mount/main.cpp ${PROJECT_SOURCE_DIR}/tools/mount/operations.cpp)
    file(GLOB mount_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/mount/*.cpp)
    list(REMOVE_ITEM mount_sources ${mount_program})
    add_library(mount_parts STATIC ${mount_sources})
    target_include_directories(mount_parts PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(mount_parts PUBLIC tools_common quillet_options)

    find_package(PkgConfig)
    if(PKG_CONFIG_FOUND)
        pkg_check_modules(FUSE3 IMPORTED_TARGET fuse3>=3.12)
    endif()
    if(FUSE3_FOUND)
        add_executable(quillet-mount ${mount_program})
        target_compile_definitions(quillet-mount PRIVATE QUILLET_VERSION="${PROJECT_VERSION}")
        target_link_libraries(quillet-mount PRIVATE mount_parts ${QUILLET_LIBRARY} PkgConfig::FUSE3)
        set_target_properties(quillet-mount PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}
            INSTALL_RPATH "${QUILLET_RPATH}" BUILD_WITH_INSTALL_RPATH ON)
    else()
        message(STATUS "quillet-mount is not built: it needs libfuse 3.12 or newer (libfuse3-dev, pkg-config)")
    endif()
endif()
