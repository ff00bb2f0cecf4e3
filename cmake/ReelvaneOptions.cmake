# What every target is compiled with: the language level, the warnings and the chosen sanitizers.
option(REELVANE_GUI "Build the desktop application" ON)
option(REELVANE_TESTS "Build the tests" ON)
option(REELVANE_FUZZ "Build the fuzzers, which takes clang" OFF)
option(REELVANE_COVERAGE "Count which lines the tests reach" OFF)
set(REELVANE_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")

add_library(reelvane_options INTERFACE)
target_compile_features(reelvane_options INTERFACE cxx_std_20)
target_compile_options(reelvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
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
