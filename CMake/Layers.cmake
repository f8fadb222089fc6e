# The five layers. Arrows point down only: a layer sees the headers of the layers it names and no others.
#
# Headers are included as "OrvaneCore/Workspace/PaneNode.h". So that a layer's include path shows that layer alone,
# each gets an include folder of its own in the build tree that holds one link: <build>/include/X/X -> Sources/X.

# orvane_layer(NAME [USES LAYER...] [LINKS LIBRARY...] [PRIVATE_LINKS LIBRARY...])
# makes the static library NAME of all sources below Sources/NAME.
function(orvane_layer NAME)
  cmake_parse_arguments(LAYER "" "" "USES;LINKS;PRIVATE_LINKS;HEADERS_PRECOMPILED" ${ARGN})
  set(folder "${CMAKE_SOURCE_DIR}/Sources/${NAME}")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp" "${folder}/*.h")
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  set(includes "${CMAKE_BINARY_DIR}/include/${NAME}")
  file(MAKE_DIRECTORY "${includes}")
  file(CREATE_LINK "${folder}" "${includes}/${NAME}" SYMBOLIC)

  if(NOT sources)
    add_library(${NAME} INTERFACE)
    target_include_directories(${NAME} INTERFACE "${includes}")
    target_link_libraries(${NAME} INTERFACE ${LAYER_USES} ${LAYER_LINKS})
    return()
  endif()
  add_library(${NAME} STATIC ${sources})
  target_include_directories(${NAME} PUBLIC "${includes}")
  target_link_libraries(${NAME} PUBLIC ${LAYER_USES} ${LAYER_LINKS} PRIVATE ${LAYER_PRIVATE_LINKS})
  target_precompile_headers(${NAME} PRIVATE ${LAYER_HEADERS_PRECOMPILED})
endfunction()
