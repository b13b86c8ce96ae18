# rooms(TARGET [ROOM+ROOM...]...): with KELWHICH_ROOM_UNITS, each folder of the target's sources is compiled as one unit,
# and so are rooms that are joined by "+". That takes a third of the time of compiling file by file, since most of it is
# the headers of other libraries.
option(KELWHICH_ROOM_UNITS "Compile each room as one unit" OFF)

function(rooms target)
  if(NOT KELWHICH_ROOM_UNITS)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    if(IS_ABSOLUTE "${source}") # it is generated, and in no room
      continue()
    endif()
    get_filename_component(room "${source}" DIRECTORY)
    foreach(joined ${ARGN})
      if("+${joined}+" MATCHES "[+]${room}[+]")
        set(room "${joined}")
      endif()
    endforeach()
    string(MAKE_C_IDENTIFIER "room_${room}" group)
    set_property(SOURCE "${source}" PROPERTY UNITY_GROUP "${group}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It takes the sources of a unit for headers, in which it warns of anonymous namespaces.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()
