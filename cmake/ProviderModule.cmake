# add_provider_module(TARGET OBJECTS LIBRARY NAME source...)
#
# Builds the provider module libNAME.so as TARGET, against LIBRARY: the embedded provider library or
# an installed one. The objects stand alone as OBJECTS, so that tests and programs can link what the
# module hides; it exports PegasusCreateProvider and nothing else.
set(PROVIDER_MODULE_MAP ${CMAKE_CURRENT_LIST_DIR}/ProviderModule.map)
function(add_provider_module target objects library name)
  add_library(${objects} OBJECT ${ARGN})
  target_include_directories(${objects} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${objects} PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
  target_link_libraries(${objects} PUBLIC ${library} PRIVATE project_warnings)

  add_library(${target} SHARED)
  target_link_libraries(${target} PRIVATE ${objects})
  target_link_options(${target} PRIVATE -Wl,--version-script=${PROVIDER_MODULE_MAP})
  set_target_properties(${target} PROPERTIES
                        OUTPUT_NAME ${name} LINK_DEPENDS ${PROVIDER_MODULE_MAP})
  if(NOT SANITIZE)
    # What the CIM server's libraries do not provide is missed here and not on the switch. (The
    # sanitizers' own symbols come with the program.)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()
