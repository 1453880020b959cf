# The simulated handset: a library that includes nothing of the product, and the program around it.
file(GLOB handset_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/handset/*.cpp)
list(REMOVE_ITEM handset_sources ${PROJECT_SOURCE_DIR}/handset/main.cpp)
add_library(handset STATIC ${handset_sources})
quillet_folder_includes(handset handset_include_dir)
target_include_directories(handset PUBLIC ${handset_include_dir})
target_link_libraries(handset PUBLIC quillet_options)

add_executable(simulated-handset ${PROJECT_SOURCE_DIR}/handset/main.cpp)
target_link_libraries(simulated-handset PRIVATE handset)
set_target_properties(simulated-handset PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
