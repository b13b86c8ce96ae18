find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(utf8cpp REQUIRED)

# The built program as a user meets it: sessions of commands and what they must answer.
file(GLOB sessions CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/program/*.session")
foreach(path ${sessions})
  get_filename_component(session "${path}" NAME_WE)
  if(session STREQUAL memory AND CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    continue()
  endif()
  add_test(NAME program.${session} COMMAND program/run.sh $<TARGET_FILE:kelwhich_program> program/${session}.session
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(program.${session} PROPERTIES TIMEOUT 120 ENVIRONMENT "pages=${PROJECT_BINARY_DIR}/cli/generated")
endforeach()
add_unit_tests(
  program_tests
  SOURCES
  cli/RecordingTest.cpp
  ../cli/Escape.cpp
  ../cli/Kinds.cpp
  ../cli/Reason.cpp
  ../cli/Recording.cpp
  ../cli/RecordingFormat.cpp
  ../cli/Replay.cpp
  LIBRARIES
  kelwhich_standalone_objects
  kelwhich_objects
  kelwhich_paths
  kelwhich_standalone_needs
  fmt::fmt-header-only
  nlohmann_json::nlohmann_json
  utf8cpp)
