# The program while the system fails it.
foreach(test lookup store-build)
  add_test(NAME faults.${test} COMMAND faults/${test}.sh $<TARGET_FILE:kelwhich_program>
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(faults.${test} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300 PROCESSORS 2 LABELS long)
endforeach()
