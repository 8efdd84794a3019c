# How the tests of this project are declared. Included by tests/CMakeLists.txt.

include(GoogleTest)
find_package(GTest REQUIRED)

# A test runs for a moment and is compiled often, so only what it tests is optimised.
add_library(configtools_test_options INTERFACE)
target_link_libraries(configtools_test_options INTERFACE configtools_options)
target_compile_options(configtools_test_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-O0>)

# GoogleTest's headers cost more to compile than most tests: they are compiled once, with those of the standard library
# that many tests use.
add_library(configtools_test_pch OBJECT "${PROJECT_SOURCE_DIR}/tests/support/pch.cpp")
target_link_libraries(configtools_test_pch PRIVATE configtools_test_options GTest::gmock)
target_precompile_headers(configtools_test_pch PRIVATE <gmock/gmock.h> <gtest/gtest.h>
    <algorithm> <array> <filesystem> <fstream> <functional> <list> <map> <memory> <optional> <random> <sstream> <vector>)
set_target_properties(configtools_test_pch PROPERTIES CXX_EXTENSIONS OFF CONFIGTOOLS_IS_TEST ON)

# configtools_add_test(NAME <name> SOURCES <file>... [INTERNAL] [LIBRARIES <library>...])
# A program of tests, each of which ctest runs by itself. It links the shared library as an outsider would;
# with INTERNAL it links the library's objects instead, and sees its internal headers.
function(configtools_add_test)
    cmake_parse_arguments(PARSE_ARGV 0 arg "INTERNAL" "NAME" "SOURCES;LIBRARIES")
    set(library $<IF:$<BOOL:${arg_INTERNAL}>,configtools_internal,ConfigTools::configtools>)
    add_executable(${arg_NAME} ${arg_SOURCES})
    target_link_libraries(${arg_NAME} PRIVATE
        ${library} configtools_test_support ${arg_LIBRARIES} configtools_test_options GTest::gmock GTest::gmock_main)
    target_precompile_headers(${arg_NAME} REUSE_FROM configtools_test_pch)
    set_target_properties(${arg_NAME} PROPERTIES CXX_EXTENSIONS OFF CONFIGTOOLS_IS_TEST ON)
    gtest_discover_tests(${arg_NAME} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${arg_NAME}/" PROPERTIES TIMEOUT 120)
endfunction()

# configtools_add_static_test(<arguments of add_test>...)
# A test of sources, compilers or built files. A sanitizer has nothing to check there, and may change what is built.
function(configtools_add_static_test)
    if(NOT CONFIGTOOLS_SANITIZE)
        add_test(${ARGV})
    endif()
endfunction()
