# trelvo_layer(NAME SOURCES file... USES layer... [LIBS target...] [PUBLIC_LIBS target...])
#
# Adds the sources of one folder to the library and states which other folders they may use. The
# statement is written to layers.txt in the build tree, where a test holds every #include against it.
# LIBS are libraries of others that the sources call; PUBLIC_LIBS those whose headers a public header
# of the layer includes (each stands in TRELVO_PUBLIC_DEPENDENCIES too).
function(trelvo_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;USES;LIBS;PUBLIC_LIBS" ${ARGN})
  list(TRANSFORM LAYER_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)

  add_library(trelvo_${name} OBJECT ${LAYER_SOURCES})
  target_include_directories(trelvo_${name} PRIVATE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
  target_compile_options(trelvo_${name} PRIVATE -fno-semantic-interposition)
  if(TRELVO_POOL)
    target_compile_definitions(trelvo_${name} PRIVATE TRELVO_POOL=1)
  endif()
  if(TRELVO_LTO)
    set_target_properties(trelvo_${name} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
    set_target_properties(trelvocore PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
  endif()
  target_link_libraries(trelvo_${name} PRIVATE ${LAYER_LIBS} ${LAYER_PUBLIC_LIBS})
  target_link_libraries(trelvocore PRIVATE ${LAYER_LIBS} PUBLIC ${LAYER_PUBLIC_LIBS})
  target_sources(trelvocore PRIVATE $<TARGET_OBJECTS:trelvo_${name}>)

  set_property(GLOBAL APPEND_STRING PROPERTY TRELVO_LAYERS "${name}: ${LAYER_USES}\n")
endfunction()

# Writes what the layers stated; call it after the last one.
function(trelvo_write_layers)
  get_property(layers GLOBAL PROPERTY TRELVO_LAYERS)
  string(REPLACE ";" " " layers "${layers}")
  file(WRITE ${PROJECT_BINARY_DIR}/layers.txt "${layers}")
endfunction()
