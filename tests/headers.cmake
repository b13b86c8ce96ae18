# Each public header, compiled alone.
file(GLOB public_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/include"
     "${PROJECT_SOURCE_DIR}/include/tessgen/kelwhich/*.hpp")
foreach(header ${public_headers})
  get_filename_component(name "${header}" NAME_WE)
  file(CONFIGURE OUTPUT "headers/${name}.cpp" CONTENT "#include \"@header@\"\n" @ONLY)
  list(APPEND header_sources "${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp")
endforeach()
add_library(public_headers_alone OBJECT ${header_sources})
target_link_libraries(public_headers_alone PRIVATE kelwhich_headers kelwhich_warnings)

# So each other header; the first include of the source of its name is compiled so already.
set(folders adaptors analysis cli fuzz host platform resolver standalone tests)
list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/\\1/*.hpp")
file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" ${folders})
foreach(header ${headers})
  string(REGEX REPLACE "hpp$" "cpp" source "${PROJECT_SOURCE_DIR}/${header}")
  set(first "")
  if(EXISTS "${source}")
    file(STRINGS "${source}" first LIMIT_COUNT 1 REGEX "^#include")
  endif()
  if(NOT first STREQUAL "#include \"${header}\"")
    string(REPLACE "/" "_" name "${header}")
    file(CONFIGURE OUTPUT "headers/${name}.cpp" CONTENT "#include \"@header@\"\n" @ONLY)
    list(APPEND other_headers "${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp")
  endif()
endforeach()
add_library(other_headers_alone OBJECT ${other_headers})
target_include_directories(other_headers_alone SYSTEM PRIVATE "${CDB_INCLUDE_DIR}")
target_compile_definitions(other_headers_alone PRIVATE KELWHICH_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(
  other_headers_alone PRIVATE kelwhich_headers kelwhich_platform kelwhich_warnings range-v3::range-v3
                              nlohmann_json::nlohmann_json utf8cpp GTest::gtest)
