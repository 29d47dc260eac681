# One interface target that every target of the project links: warnings, sanitizers, large files.
add_library(brightsweep_options INTERFACE)
target_compile_options(brightsweep_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wcast-qual -Wformat=2 -Wimplicit-fallthrough)
# Later compilers warn of things of their own, and nobody who only wants to start the program is to
# be stopped by that.
if(BRIGHTSWEEP_WERROR)
  target_compile_options(brightsweep_options INTERFACE -Werror)
endif()
target_compile_definitions(brightsweep_options INTERFACE
  _FILE_OFFSET_BITS=64 QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
  QT_NO_CAST_FROM_BYTEARRAY QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(brightsweep_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

# What makes a fault in memory harder to use: position-independent programs whose tables are
# read-only once they run, canaries, and landing pads where the processor checks them.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
target_compile_options(brightsweep_options INTERFACE
  -fstack-protector-strong -fstack-clash-protection)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
  target_compile_options(brightsweep_options INTERFACE -fcf-protection)
endif()
target_link_options(brightsweep_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)

# Functions and lines, which is what a trace tells: with the variables of Qt's headers each of the
# forty programs would take 150 MB. The build type Debug has them.
string(REGEX REPLACE "-g$|-g " "-g1 " CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")

if(BRIGHTSWEEP_SANITIZE)
  target_compile_options(brightsweep_options INTERFACE
    -fsanitize=${BRIGHTSWEEP_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(brightsweep_options INTERFACE -fsanitize=${BRIGHTSWEEP_SANITIZE})
else()
  target_compile_definitions(brightsweep_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
endif()

if(BRIGHTSWEEP_FUZZ)
  # What is fuzzed tells the fuzzer which of its branches an input reached.
  target_compile_options(brightsweep_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(brightsweep_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(BRIGHTSWEEP_CCACHE ccache)
if(BRIGHTSWEEP_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${BRIGHTSWEEP_CCACHE})
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    add_compile_options(-Xclang -fno-pch-timestamp)
  else()
    add_compile_options(-fpch-preprocess)
  endif()
endif()

# The headers that nearly every file includes, compiled once per target; further ones may follow.
function(brightsweep_precompile target)
  target_precompile_headers(${target} PRIVATE
    <QByteArray> <QObject> <QString> <QVariant>
    <atomic> <cstdint> <filesystem> <functional> <memory> <mutex> <string> <string_view>
    <system_error> <vector> ${ARGN})
endfunction()

# g++ sees overruns in its own std::string that are not there.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(brightsweep_options INTERFACE
    -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
  # With sanitizers it takes the inactive members of a std::variant for uninitialised ones.
  if(BRIGHTSWEEP_SANITIZE)
    target_compile_options(brightsweep_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
