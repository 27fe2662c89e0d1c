# What every target of the project is compiled with.

option(WEBFORMAT_BUILD_TESTS "Build the tests" ON)
option(WEBFORMAT_BUILD_BENCH "Build the benchmarks" OFF)
option(WEBFORMAT_BUILD_FUZZERS "Build the fuzz targets (clang only)" OFF)
set(WEBFORMAT_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them (address,undefined or thread)")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(webformat_options INTERFACE)
target_compile_features(webformat_options INTERFACE cxx_std_20)
target_compile_options(webformat_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror)
if(WEBFORMAT_SANITIZE)
    target_compile_options(webformat_options INTERFACE
        -fsanitize=${WEBFORMAT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(webformat_options INTERFACE -fsanitize=${WEBFORMAT_SANITIZE})
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
