# What building needs. Whatever is missing is named with the Debian package that has it.

# quillet_missing(WHAT PACKAGE...): ends the configuration.
function(quillet_missing WHAT)
    string(JOIN " " packages ${ARGN})
    message(FATAL_ERROR "${WHAT} is missing. On Debian: apt-get install ${packages}")
endfunction()

# quillet_least_compiler(ID VERSION PACKAGE)
function(quillet_least_compiler ID VERSION PACKAGE)
    if(CMAKE_CXX_COMPILER_ID STREQUAL ID AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS VERSION)
        message(FATAL_ERROR "The compiler ${CMAKE_CXX_COMPILER} is ${ID} ${CMAKE_CXX_COMPILER_VERSION}; quillet needs "
            "${VERSION} or newer (Debian 12: the package ${PACKAGE})")
    endif()
endfunction()

quillet_least_compiler(GNU 12 g++)
quillet_least_compiler(Clang 14 clang)

find_package(Threads QUIET)
if(NOT Threads_FOUND)
    quillet_missing("The system's thread library" libc6-dev)
endif()

if(QUILLET_TESTS AND NOT WIN32)
    find_package(GTest QUIET)
    if(NOT TARGET GTest::gtest_main OR NOT TARGET GTest::gmock)
        quillet_missing("GoogleTest with GoogleMock, which the tests use," libgtest-dev libgmock-dev)
    endif()
endif()
if(QUILLET_FUZZ AND NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    quillet_missing("clang, which builds the fuzzers (-DCMAKE_CXX_COMPILER=clang++)," clang)
endif()
