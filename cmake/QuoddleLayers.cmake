# SPDX-License-Identifier: MIT
# One folder is one target is one layer. A layer names what it stands on, and nothing else can be included from it
# without the linker noticing; tests/layers reads the include lines as well.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

option(QUODDLE_TESTS "Build the tests" OFF)
option(QUODDLE_WERROR "Treat warnings as errors" OFF)
set(QUODDLE_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

find_program(QUODDLE_CCACHE ccache)
if(QUODDLE_CCACHE)
  # Without these two ccache passes over whatever uses a precompiled header, which is everything here.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QUODDLE_CCACHE})
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

add_library(quoddle_options INTERFACE)
target_compile_options(quoddle_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-missing-field-initializers)
if(QUODDLE_WERROR)
  target_compile_options(quoddle_options INTERFACE -Werror)
endif()
# What makes a fault hard to exploit; tests/programs/hardening.py looks at the programs. A sanitizer has checks of its own.
if(NOT QUODDLE_SANITIZE)
  target_compile_options(quoddle_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection QUODDLE_HAS_CF_PROTECTION) # not on every processor
  if(QUODDLE_HAS_CF_PROTECTION)
    target_compile_options(quoddle_options INTERFACE -fcf-protection)
  endif()
  target_link_options(quoddle_options INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()
if(QUODDLE_SANITIZE)
  target_compile_options(quoddle_options INTERFACE -fsanitize=${QUODDLE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(quoddle_options INTERFACE -fsanitize=${QUODDLE_SANITIZE})
endif()

# quoddle_layer(NAME [QT] [LINKS target…]): a static library of every source below the calling folder.
# Includes are written from src/: #include "platform/ae/AEDesc.h".
function(quoddle_layer name)
  cmake_parse_arguments(ARG "QT" "" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h *.ui *.qrc)
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARG_LINKS})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE quoddle_options)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
    target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
  endif()
  target_precompile_headers(${name} PRIVATE <algorithm> <cstdint> <functional> <memory> <optional> <string> <string_view> <unordered_map> <utility> <vector>)
endfunction()
