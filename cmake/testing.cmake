# GoogleTest is built from its sources with the flags of the preset, so that the sanitizers and the
# 32-bit build see it as they see the library.
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
if(ORVANE_FUZZ)
    foreach(target gtest gtest_main gmock)
        target_compile_options(${target} PRIVATE -fno-sanitize=fuzzer-no-link)
    endforeach()
endif()

# orvane_add_test(NAME SOURCES file... LIBRARIES target...)
#
# One test program, run by CTest as a whole (under Wine for Windows).
function(orvane_add_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} orvane_warnings GTest::gtest_main
                                          GTest::gmock)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    # Tests are compiled more often than they run: what they test is optimised, they are not.
    target_compile_options(${name} PRIVATE -O0 -g1)
    if(ORVANE_FUZZ)
        # A fuzzer looks at the library's branches alone.
        target_compile_options(${name} PRIVATE -fno-sanitize=fuzzer-no-link)
    endif()
    list(LENGTH TEST_SOURCES sources)
    if(sources GREATER 2)
        target_precompile_headers(${name} PRIVATE
            <algorithm> <functional> <map> <memory> <set> <string> <vector> <gmock/gmock.h> <gtest/gtest.h>)
        orvane_cache_precompiled(${name})
        orvane_precompile(${name} <frame/values/variant.h> <platform/tables.h>)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
    if(NOT WIN32)
        # A test that forgets to have a registry of its own doesn't write to the user's.
        set_tests_properties(${name} PROPERTIES ENVIRONMENT
            "ORVANE_REGISTRY_USER=${CMAKE_BINARY_DIR}/tests/registry/${name}/user;ORVANE_REGISTRY_MACHINE=${CMAKE_BINARY_DIR}/tests/registry/${name}/machine")
    endif()
endfunction()
