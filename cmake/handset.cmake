# The simulated handset, a library that includes nothing of the product. Its program is among the tools.
file(GLOB handset_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/handset/*.cpp)
add_library(handset STATIC ${handset_sources})
quillet_folder_includes(handset handset_include_dir)
target_include_directories(handset PUBLIC ${handset_include_dir})
target_link_libraries(handset PUBLIC quillet_options)
