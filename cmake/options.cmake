# What every target of the project is compiled with.

option(WEBFORMAT_BUILD_TESTS "Build the tests" ON)
option(WEBFORMAT_BUILD_TOOLS "Build the command" ON)
option(WEBFORMAT_BUILD_BENCH "Build the benchmarks" OFF)
option(WEBFORMAT_BUILD_FUZZERS "Build the fuzz targets (clang only)" OFF)
set(WEBFORMAT_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them (address,undefined or thread)")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# ccache sees paths inside the checkout as relative ones, so that two checkouts share what they compile.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

# g++ alone uses precompiled headers: the clang builds show what a source forgot to include.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()
set(webformat_standard_headers
    <algorithm> <array> <atomic> <charconv> <chrono> <cmath> <cstdint> <cstring> <cwchar> <functional> <limits> <map>
    <memory> <mutex> <optional> <string> <string_view> <tuple> <type_traits> <unordered_map> <utility> <variant>
    <vector>)

add_library(webformat_options INTERFACE)
target_compile_features(webformat_options INTERFACE cxx_std_20)
target_compile_options(webformat_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror
    $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
    # Calls inside the library go straight to their function and may be inlined: nobody replaces one at load.
    -fno-semantic-interposition)
if(WEBFORMAT_SANITIZE)
    target_compile_options(webformat_options INTERFACE
        -fsanitize=${WEBFORMAT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1
        # g++ sees impossible flows in instrumented code; the other builds keep these warnings.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-maybe-uninitialized -Wno-restrict -Wno-stringop-overflow
        -Wno-stringop-overread>)
    target_link_options(webformat_options INTERFACE -fsanitize=${WEBFORMAT_SANITIZE})
endif()
if(WEBFORMAT_BUILD_FUZZERS)
    target_compile_options(webformat_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
