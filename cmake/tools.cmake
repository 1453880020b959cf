# Programs for people, and what they share.
file(GLOB tools_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/common/*.cpp)
list(FILTER tools_sources EXCLUDE REGEX "/terminal_[a-z]+\\.cpp$")
add_library(tools_common STATIC ${tools_sources}
    ${PROJECT_SOURCE_DIR}/tools/common/terminal_${QUILLET_SYSTEM}.cpp)
target_include_directories(tools_common PUBLIC ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(tools_common PRIVATE quillet_options)

file(GLOB wfxhost_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/wfxhost/*.cpp)
list(FILTER wfxhost_sources EXCLUDE REGEX "/system_[a-z]+\\.cpp$")
add_executable(wfxhost ${wfxhost_sources} ${PROJECT_SOURCE_DIR}/tools/wfxhost/system_${QUILLET_SYSTEM}.cpp)
# Of the product it sees the platform's headers alone (the host interface's types), and links nothing.
target_include_directories(wfxhost PRIVATE
    $<TARGET_PROPERTY:platform,INTERFACE_INCLUDE_DIRECTORIES>)
target_link_libraries(wfxhost PRIVATE tools_common quillet_options ${CMAKE_DL_LIBS})
set_target_properties(wfxhost PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
if(WIN32)
    target_link_options(wfxhost PRIVATE -static -s)
endif()

# qdiag uses the library as any other program would: quillet.h, and the plug-in's file beside it. It needs
# the system's terminals and is made for Linux alone.
if(NOT WIN32)
    file(GLOB qdiag_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/qdiag/*.cpp)
    add_executable(qdiag ${qdiag_sources})
    target_include_directories(qdiag PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(qdiag PRIVATE tools_common quillet quillet_options)
    set_target_properties(qdiag PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}
        INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
endif()
