# What every target is compiled with: the language level, the warnings and the chosen sanitizers.
option(REELVANE_GUI "Build the desktop application" ON)
option(REELVANE_TESTS "Build the tests" ON)
option(REELVANE_FUZZ "Build the fuzzers, which takes clang" OFF)
option(REELVANE_COVERAGE "Count which lines the tests reach" OFF)
option(REELVANE_WERROR "Treat warnings as errors, as the presets do" OFF)
set(REELVANE_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")

# Who names no build type builds what users run.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

add_library(reelvane_options INTERFACE)
target_compile_features(reelvane_options INTERFACE cxx_std_20)
target_compile_options(reelvane_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # With -O3 it warns of overlaps within its own std::string that cannot be.
  target_compile_options(reelvane_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_UNITY_BUILD)
  # Several sources are compiled as one, which takes each of them for a header.
  target_compile_options(reelvane_options INTERFACE -Wno-subobject-linkage)
endif()
if(REELVANE_WERROR)
  target_compile_options(reelvane_options INTERFACE -Werror)
endif()

# Movies come from strangers: what reads them is built so that a fault in it cannot be used.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
target_compile_options(reelvane_options INTERFACE -fstack-protector-strong)
target_link_options(reelvane_options INTERFACE LINKER:-z,relro,-z,now)
if(NOT REELVANE_SANITIZE)
  # It needs an optimised build, and a sanitizer sees more than it does.
  target_compile_options(reelvane_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
if(REELVANE_SANITIZE)
  target_compile_options(reelvane_options INTERFACE
    -fsanitize=${REELVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(reelvane_options INTERFACE -fsanitize=${REELVANE_SANITIZE})
endif()
if(REELVANE_COVERAGE)
  target_compile_options(reelvane_options INTERFACE --coverage)
  target_link_options(reelvane_options INTERFACE --coverage)
endif()

find_program(REELVANE_CCACHE ccache)
if(REELVANE_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${REELVANE_CCACHE})
endif()
