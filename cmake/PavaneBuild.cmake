# What every target of the project is compiled with, and the one way to add a part or a test.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, Debug or RelWithDebInfo" FORCE)
endif()

find_program(PAVANE_CCACHE ccache)
if(PAVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PAVANE_CCACHE})
    if(PAVANE_SHARED_HEADERS)
        # what ccache asks for before it keeps sources that read a precompiled header
        set(CMAKE_CXX_COMPILER_LAUNCHER
            ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${PAVANE_CCACHE})
    endif()
    set(CMAKE_C_COMPILER_LAUNCHER ${PAVANE_CCACHE})
endif()

add_library(pavane-flags INTERFACE)
target_compile_options(pavane-flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion $<$<BOOL:${PAVANE_WERROR}>:-Werror>
    # pixels and ticks have to be the same on every processor
    -ffp-contract=off)
target_include_directories(pavane-flags INTERFACE ${PROJECT_SOURCE_DIR})
if(PAVANE_SANITIZE)
    set(sanitizers -fsanitize=address,undefined,float-cast-overflow
                   -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_options(${sanitizers})
    add_link_options(${sanitizers})
endif()

if(PAVANE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Most of the time of a compilation goes into the headers of the C++ library. With PAVANE_SHARED_HEADERS they are
# read once, for parts and for tests each; which headers a source needs is still told by the builds without it.
function(pavane_share_headers target kind)
    if(NOT PAVANE_SHARED_HEADERS)
        return()
    endif()
    if(NOT TARGET pavane-${kind}-headers)
        set(source ${PROJECT_BINARY_DIR}/${kind}_headers.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
        set(headers <algorithm> <array> <charconv> <chrono> <cmath> <filesystem> <fstream> <functional> <map> <memory>
                    <random> <sstream> <string> <string_view> <utility> <vector>)
        if(kind STREQUAL part)
            add_library(pavane-part-headers OBJECT ${source})
        else()
            # code of programs is not as independent of its place as that of libraries
            add_executable(pavane-test-headers ${source})
            list(APPEND headers <gtest/gtest.h>)
            target_compile_options(pavane-test-headers PRIVATE -fPIC)
            target_link_libraries(pavane-test-headers PRIVATE GTest::gtest)
            pavane_plain_tests(pavane-test-headers)
        endif()
        target_link_libraries(pavane-${kind}-headers PRIVATE pavane-flags)
        target_precompile_headers(pavane-${kind}-headers PRIVATE ${headers})
        # what GCC 12 wrongly says of moved strings it says aloud of headers that were read before
        target_compile_options(pavane-flags INTERFACE
            $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess;-Wno-array-bounds;-Wno-restrict>
            $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow;-Wno-stringop-overread>)
    endif()
    if(kind STREQUAL test)
        # as the toolkit asks of those that link it: all have to be compiled alike
        target_compile_options(${target} PRIVATE -fPIC)
    endif()
    target_precompile_headers(${target} REUSE_FROM pavane-${kind}-headers)
endfunction()

# Half of the time of a checked build went into optimising test bodies that run once.
function(pavane_plain_tests target)
    if(PAVANE_SANITIZE)
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()

# pavane_part(NAME SOURCES ... LINK ...): one static, position-independent part of the library.
# Tests link parts; the shared library is made of all of them.
function(pavane_part name)
    cmake_parse_arguments(PART "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${PART_SOURCES})
    target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:pavane-flags> ${PART_LINK}
                                  PRIVATE ${PART_PRIVATE_LINK})
    pavane_share_headers(${name} part)
    set_property(GLOBAL APPEND PROPERTY PAVANE_PARTS ${name})
endfunction()

# pavane_test(NAME SOURCES ... LINK ... [QT | WINDOWS]): one GoogleTest program.
# With QT its main() starts and stops the platform, with WINDOWS for windows too; without, nothing of
# the toolkit is linked.
function(pavane_test name)
    cmake_parse_arguments(TEST "QT;WINDOWS" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    if(TEST_WINDOWS)
        target_compile_definitions(${name} PRIVATE PAVANE_TEST_WINDOWS)
    endif()
    if(TEST_QT OR TEST_WINDOWS)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/platform_main.cpp)
        target_link_libraries(${name} PRIVATE ${TEST_LINK} pavane-platform pavane-flags GTest::gtest)
    else()
        target_link_libraries(${name} PRIVATE ${TEST_LINK} pavane-flags GTest::gtest_main)
    endif()
    target_compile_definitions(${name} PRIVATE PAVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                               PAVANE_BINARY_DIR="${PROJECT_BINARY_DIR}")
    pavane_plain_tests(${name})
    pavane_share_headers(${name} test)
    add_test(NAME ${name} COMMAND ${name})
    # a folder of its own for files, so that two runs on one machine do not meet
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/files)
    file(MAKE_DIRECTORY ${folder})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=1;LC_ALL=C.UTF-8;TEST_TMPDIR=${folder}"
        TIMEOUT 600)
endfunction()
