# rooms(TARGET): with CMAKE_UNITY_BUILD, as in the preset release, each folder of the target's sources is compiled as one
# unit. That takes a third of the time of compiling file by file, since most of it is the headers of others.
function(rooms target)
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    get_filename_component(room "${source}" DIRECTORY)
    string(MAKE_C_IDENTIFIER "room_${room}" group)
    set_property(SOURCE "${source}" PROPERTY UNITY_GROUP "${group}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It takes the sources of a unit for headers, in which it warns of anonymous namespaces.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()
