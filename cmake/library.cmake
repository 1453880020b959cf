# libquillet: the plug-in's objects without the front, as a library that programs link.

# quillet_public_headers(OUT): quillet.h and the headers that it includes, directly or not.
function(quillet_public_headers OUT)
    set(found quillet.h)
    set(unread quillet.h)
    while(unread)
        list(POP_FRONT unread header)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
        file(STRINGS ${PROJECT_SOURCE_DIR}/${header} lines REGEX "^#include \"")
        foreach(line ${lines})
            string(REGEX REPLACE "^#include \"(.*)\".*" "\\1" included "${line}")
            if(NOT included IN_LIST found)
                list(APPEND found ${included})
                list(APPEND unread ${included})
            endif()
        endforeach()
    endwhile()
    list(SORT found)
    set(${OUT} ${found} PARENT_SCOPE)
endfunction()

add_library(quillet_library SHARED)
add_library(quillet::quillet ALIAS quillet_library)
foreach(layer ${QUILLET_LIBRARY_LAYERS})
    target_sources(quillet_library PRIVATE $<TARGET_OBJECTS:${layer}>)
endforeach()
target_compile_features(quillet_library INTERFACE cxx_std_20)
target_link_libraries(quillet_library PRIVATE quillet_options)
# Headers include each other as "link/...", programs include <quillet.h> or <quillet/quillet.h>.
target_include_directories(quillet_library INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quillet> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
set_target_properties(quillet_library PROPERTIES EXPORT_NAME quillet OUTPUT_NAME quillet
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR} RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
if(WIN32)
    # The name of the file has the interface's number, the import library's has not.
    set_target_properties(quillet_library PROPERTIES PREFIX "" OUTPUT_NAME quillet-${QUILLET_INTERFACE}
        ARCHIVE_OUTPUT_NAME quillet ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
    quillet_resources(quillet_library quillet-${QUILLET_INTERFACE}.dll "Client of a phone's diagnostic protocol" "")
    target_link_libraries(quillet_library PRIVATE gdi32 ole32 version winmm)
    target_link_options(quillet_library PRIVATE -static -s)
else()
    set(map ${PROJECT_SOURCE_DIR}/packaging/libquillet.map)
    set_target_properties(quillet_library PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${QUILLET_INTERFACE}
        LINK_DEPENDS ${map})
    target_link_options(quillet_library PRIVATE -Wl,--no-undefined -Wl,--version-script=${map})
endif()

# What the programs of this tree link.
if(WIN32)
    set(QUILLET_LIBRARY quillet) # the file that the Windows package has
else()
    set(QUILLET_LIBRARY quillet_library)
endif()
