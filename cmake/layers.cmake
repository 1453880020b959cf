# One build target per source folder. A layer sees its own headers and those of the layers it names,
# through a folder of links made for it alone, so that an include against the direction of the
# architecture does not compile.

# quillet_folder_includes(NAME): the include folder that holds nothing but a link to NAME/.
function(quillet_folder_includes NAME OUT)
    set(dir ${CMAKE_BINARY_DIR}/include-dirs/${NAME})
    file(MAKE_DIRECTORY ${dir})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${NAME} ${dir}/${NAME} SYMBOLIC)
    set(${OUT} ${dir} PARENT_SCOPE)
endfunction()

# quillet_layer(NAME DEPENDENCY...): the static library `NAME` of all sources of the folder NAME/.
function(quillet_layer NAME)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${NAME}/*.cpp)
    add_library(${NAME} STATIC ${sources})
    quillet_folder_includes(${NAME} include_dir)
    target_include_directories(${NAME} PUBLIC ${include_dir})
    target_link_libraries(${NAME} PUBLIC quillet_options ${ARGN})
endfunction()
