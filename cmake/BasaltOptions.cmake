# Options of the build, and the one interface target that carries warnings and sanitizers.
option(BASALT_TESTS "Build the tests" ON)
option(BASALT_BENCH "Build the benchmarks (compares with QtSql and SOCI)" OFF)
option(BASALT_FUZZ "Build the libFuzzer targets (needs clang)" OFF)
option(BASALT_WERROR "Warnings are errors" OFF)
option(BASALT_COVERAGE "Instrument for gcov" OFF)
set(BASALT_SANITIZE "" CACHE STRING "Value for -fsanitize, for instance address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS ON)  # __int128 with its std:: traits
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

add_library(basalt_options INTERFACE)
add_library(Basalt::options ALIAS basalt_options)
target_compile_features(basalt_options INTERFACE cxx_std_20)
target_compile_options(basalt_options INTERFACE
  $<BUILD_INTERFACE:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Wno-sign-conversion;-Wnon-virtual-dtor;-Woverloaded-virtual;-Wimplicit-fallthrough>
  # __int128 is what exact decimals are made of; every compiler that builds Basalt has it.
  $<BUILD_INTERFACE:-Wno-pedantic>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees an overlap in every "text" + std::string that it inlines (its bug 105329), and an uninitialised member in
  # structs with designated initialisers that it moves (its bug 105562 and kin).
  target_compile_options(basalt_options INTERFACE $<BUILD_INTERFACE:-Wno-restrict;-Wno-maybe-uninitialized>)
endif()
if(BASALT_WERROR)
  target_compile_options(basalt_options INTERFACE $<BUILD_INTERFACE:-Werror>)
endif()
if(BASALT_SANITIZE)
  target_compile_options(basalt_options INTERFACE
    # Line tables are all that a report shows.
    $<BUILD_INTERFACE:-fsanitize=${BASALT_SANITIZE};-fno-sanitize-recover=all;-fno-omit-frame-pointer;-g1>)
  target_link_options(basalt_options INTERFACE $<BUILD_INTERFACE:-fsanitize=${BASALT_SANITIZE}>)
endif()
if(BASALT_COVERAGE)
  target_compile_options(basalt_options INTERFACE $<BUILD_INTERFACE:--coverage>)
  target_link_options(basalt_options INTERFACE $<BUILD_INTERFACE:--coverage>)
endif()

# Faster builds where the tools are at hand; the result is the same without them.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM)
  add_link_options(-fuse-ld=mold)
endif()
