# What keeps a mistake from becoming a way in, in every build that people run: canaries on the stack, no
# stack that jumps over its guard page, checked calls of the C library and checked containers, tables that
# are read-only once the program runs, programs at no fixed address, marked targets of jumps where the
# processor knows them. docs/performance.md has what it costs. Sanitizers bring checks of their own, and an
# unoptimised build is for the debugger.
option(HARDENING "Off: without these flags, to measure what they cost" ON)
if(SANITIZE OR CMAKE_BUILD_TYPE STREQUAL "Debug" OR NOT HARDENING)
  return()
endif()
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_compile_definitions(_GLIBCXX_ASSERTIONS)
add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
add_link_options(-Wl,-z,relro,-z,now)
# Not every compiler has these for every processor.
foreach(flag -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    add_compile_options(${flag})
  endif()
endforeach()
