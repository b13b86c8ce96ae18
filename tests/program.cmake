# The built program as a user meets it: sessions of commands and what they must answer.
file(GLOB sessions CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/program/*.session")
foreach(path ${sessions})
  get_filename_component(session "${path}" NAME_WE)
  if(session STREQUAL memory AND NOT KELWHICH_STATIC_PROGRAM) # libraries and sanitizers take memory of their own
    continue()
  endif()
  add_test(NAME program.${session} COMMAND program/run.sh $<TARGET_FILE:kelwhich_program> program/${session}.session
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(program.${session} PROPERTIES TIMEOUT 120 ENVIRONMENT "pages=${PROJECT_BINARY_DIR}/cli/generated")
endforeach()
add_unit_tests(
  program_tests
  SOURCES
  cli/EscapeTest.cpp
  cli/LspTest.cpp
  cli/NamesOfFilesTest.cpp
  cli/RecordingTest.cpp
  LIBRARIES
  kelwhich_cli
  kelwhich_standalone_objects
  kelwhich_objects
  kelwhich_paths
  kelwhich_standalone_needs)
rooms(program_tests)
