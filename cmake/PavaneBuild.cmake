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

# pavane_part(NAME SOURCES ... LINK ...): one static, position-independent part of the library.
# Tests link parts; the shared library is made of all of them.
function(pavane_part name)
    cmake_parse_arguments(PART "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${PART_SOURCES})
    target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:pavane-flags> ${PART_LINK}
                                  PRIVATE ${PART_PRIVATE_LINK})
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
    if(PAVANE_SANITIZE)
        # half of the time of a checked build went into optimising test bodies that run once
        target_compile_options(${name} PRIVATE -O0)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    # a folder of its own for files, so that two runs on one machine do not meet
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/files)
    file(MAKE_DIRECTORY ${folder})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=1;LC_ALL=C.UTF-8;TEST_TMPDIR=${folder}"
        TIMEOUT 600)
endfunction()
