# SANITIZE=address,undefined or SANITIZE=thread instruments everything that is built here,
# the module and the tests included. The presets asan and tsan set it.
set(SANITIZE "" CACHE STRING "Sanitizers for the whole build: address,undefined or thread")
if(SANITIZE)
  add_compile_options(-fsanitize=${SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # These two follow values through the instrumented code and lose their way in it; the plain
    # builds are the ones to judge.
    target_compile_options(project_warnings INTERFACE
                           -Wno-maybe-uninitialized -Wno-null-dereference)
  endif()
endif()
