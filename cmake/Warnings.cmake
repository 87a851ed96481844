# Every target of this project is built with the same warnings, and a warning is an error.
# Third-party headers come in as SYSTEM and are not judged.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
  -Wcast-qual -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Werror
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
