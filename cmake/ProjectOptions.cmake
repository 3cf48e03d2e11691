# The compiler settings that every target of ours links through hfp_options.
add_library(hfp_options INTERFACE)
target_compile_features(hfp_options INTERFACE cxx_std_20)
target_compile_options(hfp_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
  $<$<CXX_COMPILER_ID:Clang>:-Wno-keyword-macro>) # Xkb.h redefines `explicit`
# Qt's keyword macros would take the names `signals`, `slots` and `emit` away from everybody.
target_compile_definitions(hfp_options INTERFACE QT_NO_KEYWORDS)
target_include_directories(hfp_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# Some releases of GLib ask for this of all that link it, and targets that share precompiled headers need
# the same options.
target_compile_options(hfp_options INTERFACE -pthread)
set(CMAKE_CXX_EXTENSIONS OFF)
# For size, because the program waits in memory all day and works for moments. Rooms that need speed call
# hfp_optimize_for_speed.
set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG -ffunction-sections -fdata-sections")
if(APPLE)
  set(CMAKE_EXE_LINKER_FLAGS_RELEASE "-Wl,-dead_strip")
  # Nobody has seen what that compiler warns of.
  target_compile_options(hfp_options INTERFACE -Wno-error)
else()
  set(CMAKE_EXE_LINKER_FLAGS_RELEASE "-Wl,--gc-sections")
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
  $<$<CXX_COMPILER_ID:Clang>:-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/tests/sanitizers-ignore.txt>)
if(HOLLOWFERNPIKE_SANITIZE)
  target_compile_options(hfp_options INTERFACE ${sanitizers})
  target_compile_definitions(hfp_options INTERFACE _GLIBCXX_ASSERTIONS)
  # The default linker takes ten times as long.
  target_link_options(hfp_options INTERFACE ${sanitizers} $<$<CXX_COMPILER_ID:Clang>:-fuse-ld=lld>)
endif()

# Optimized builds guard themselves against corrupted memory. Debug builds have the sanitizers for that.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
add_library(hfp_hardening INTERFACE)
set(is_optimized $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|i.86)$")
  set(jump_protection -fcf-protection)
elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL aarch64)
  set(jump_protection -mbranch-protection=standard)
endif()
if(APPLE)
  set(is_optimized 0) # these options are for other linkers
endif()
target_compile_options(hfp_hardening INTERFACE
  "$<${is_optimized}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>"
  "$<${is_optimized}:-fstack-protector-strong;-fstack-clash-protection;${jump_protection}>")
target_link_options(hfp_hardening INTERFACE "$<${is_optimized}:LINKER:-z,relro,-z,now>")

# Tells fuzzers which of our code an input reaches.
add_library(hfp_guidance INTERFACE)
if(HOLLOWFERNPIKE_FUZZ)
  target_compile_options(hfp_guidance INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(HOLLOWFERNPIKE_COVERAGE)
  # Counters are shared by threads, and their files by all processes of a test.
  target_compile_options(hfp_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(hfp_options INTERFACE --coverage)
endif()

# A library whose work is counted in nanoseconds.
function(hfp_optimize_for_speed name)
  target_compile_options(${name} PRIVATE
    $<$<CONFIG:Release>:-O2>
    $<$<BOOL:${HOLLOWFERNPIKE_COVERAGE}>:-O1>) # counting is slow: this makes it bearable
endfunction()

# A static library of ours: hfp_library(name SOURCES ... LINKS ... [READ_ONCE headers | HEADERS_OF library]).
# Reading the headers of others takes most of the time in which a source is compiled, so READ_ONCE names
# headers to compile once, besides those of the standard library, and HEADERS_OF a library whose compiled
# headers fit this one, too. Neither makes an include unnecessary.
function(hfp_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "HEADERS_OF" "SOURCES;LINKS;READ_ONCE")
  add_library(${name} STATIC ${arg_SOURCES})
  list(LENGTH arg_SOURCES count)
  if(arg_HEADERS_OF)
    target_precompile_headers(${name} REUSE_FROM ${arg_HEADERS_OF})
  elseif(arg_READ_ONCE OR count GREATER 8)
    target_precompile_headers(${name} PRIVATE <algorithm> <chrono> <filesystem> <functional> <map>
      <memory> <optional> <string> <vector> ${arg_READ_ONCE})
  endif()
  # With sanitizers, code that is not optimized takes four times the room, and each test some 8 % longer.
  target_compile_options(${name} PRIVATE $<$<BOOL:${HOLLOWFERNPIKE_SANITIZE}>:-O1>)
  target_link_libraries(${name} PUBLIC hfp_options ${arg_LINKS} PRIVATE hfp_guidance hfp_hardening)
endfunction()
