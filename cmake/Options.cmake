# How everything is compiled: the language, the warnings, the sanitizers.
option(BUILD_TESTING "Build the tests" ON)
option(TROVAST_BENCH "Build the benchmarks" OFF)
option(TROVAST_FUZZ "Build the fuzz targets; needs clang" OFF)
# Measured: 2 % off a key stroke, nothing off a scan, a minute more for every link. So: off.
option(TROVAST_LTO "Optimize across files when linking" OFF)
set(TROVAST_SANITIZE "" CACHE STRING "Value of -fsanitize=, or nothing")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ${TROVAST_LTO})
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -D_GLIBCXX_ASSERTIONS")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG -D_FORTIFY_SOURCE=2 -fstack-protector-strong")
# The same object files from every build folder, so that ccache serves all of them.
add_compile_options(-ffile-prefix-map=${CMAKE_BINARY_DIR}=.)
add_link_options(-Wl,--as-needed -Wl,-z,relro,-z,now)

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(trovast_options INTERFACE)
target_compile_options(trovast_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wunused -Wformat=2 -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wmissing-field-initializers>
    $<$<CXX_COMPILER_ID:Clang>:-Wnull-dereference -Wno-missing-field-initializers>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(trovast_options INTERFACE -march=x86-64-v2)
endif()

if(TROVAST_SANITIZE)
    add_compile_options(-fsanitize=${TROVAST_SANITIZE} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TROVAST_SANITIZE})
endif()
if(TROVAST_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "The fuzz targets need clang: use the preset fuzz.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
# What every test program runs with: one variable, since gtest_discover_tests passes no list on.
if(TROVAST_SANITIZE STREQUAL "thread")
    set(TROVAST_TEST_ENVIRONMENT TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_LIST_DIR}/tsan.supp)
else()
    set(TROVAST_TEST_ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endif()
