# The program under faults of the system. Tracing does not go together with sanitizers.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_test(NAME faults.store-build COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/faults/store-build.sh"
                                           $<TARGET_FILE:kelwhich_program>)
  set_tests_properties(faults.store-build PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77)
endif()
