# The product: the layers in their order, and the plug-in that is made of all of them.

if(WIN32)
    set(QUILLET_SYSTEM windows)
else()
    set(QUILLET_SYSTEM posix)
endif()

file(GLOB platform_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/platform/*.cpp
    ${PROJECT_SOURCE_DIR}/platform/${QUILLET_SYSTEM}/*.cpp)
add_library(platform STATIC ${platform_sources})
quillet_folder_includes(platform platform_include_dir)
# "platform/..." is what both systems share; "system/..." is the half of the system built for.
target_include_directories(platform PUBLIC ${platform_include_dir}
    ${PROJECT_SOURCE_DIR}/platform/${QUILLET_SYSTEM})
target_link_libraries(platform PUBLIC quillet_options)
if(WIN32)
    target_link_libraries(platform PUBLIC gdi32 ole32 version winmm)
endif()

quillet_layer(link platform)
quillet_layer(diag link)
quillet_layer(efs2 diag)
quillet_layer(ftm diag)
quillet_layer(portserver link)
quillet_layer(qlib efs2 ftm portserver)
quillet_layer(plugin qlib)

# quillet_resources(TARGET FILE_NAME DESCRIPTION BANNER): the version resource of a Windows library, and more resources.
function(quillet_resources TARGET QUILLET_FILE_NAME QUILLET_DESCRIPTION QUILLET_BANNER)
    configure_file(${PROJECT_SOURCE_DIR}/resources/quillet.rc.in ${CMAKE_BINARY_DIR}/${TARGET}.rc @ONLY)
    target_sources(${TARGET} PRIVATE ${CMAKE_BINARY_DIR}/${TARGET}.rc)
endfunction()

# quillet.wfx: every object of every layer, so that the exported classes are all there.
set(QUILLET_LIBRARY_LAYERS platform link diag efs2 ftm portserver qlib)
add_library(quillet SHARED)
set_target_properties(quillet PROPERTIES PREFIX "" OUTPUT_NAME quillet SUFFIX ".wfx"
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR} RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
foreach(layer ${QUILLET_LIBRARY_LAYERS} plugin)
    target_sources(quillet PRIVATE $<TARGET_OBJECTS:${layer}>)
endforeach()
target_link_libraries(quillet PRIVATE quillet_options)
if(WIN32)
    # The picture of the banner, and the version that it shows.
    quillet_resources(quillet quillet.wfx "Handset file system for file managers"
        "205 BITMAP \"${PROJECT_SOURCE_DIR}/resources/banner.bmp\"")
    target_link_libraries(quillet PRIVATE gdi32 ole32 version winmm)
    # Hosts look the functions up by their undecorated names, and have none of the compiler's libraries.
    target_link_options(quillet PRIVATE -static -s -Wl,--kill-at)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set_target_properties(quillet PROPERTIES SUFFIX ".wfx64")
    endif()
else()
    target_link_options(quillet PRIVATE -Wl,-soname,quillet.wfx -Wl,--no-undefined)
endif()
