# The built program as a user meets it: sessions of commands and what they must answer.
foreach(session answers bad-input command-line doctor output places)
  add_test(NAME program.${session} COMMAND program/run.sh $<TARGET_FILE:kelwhich_program> program/${session}.session
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(program.${session} PROPERTIES TIMEOUT 120)
endforeach()
