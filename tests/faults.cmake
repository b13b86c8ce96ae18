# The program while the system fails it: under a sample of the faults, or each.
option(KELWHICH_EVERY_FAULT "Try every fault of a system call" OFF)
set(every $<IF:$<BOOL:${KELWHICH_EVERY_FAULT}>,1,7>)
foreach(test lookup store-build)
  add_test(NAME faults.${test} COMMAND faults/${test}.sh $<TARGET_FILE:kelwhich_program> ${every}
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(faults.${test} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300 PROCESSORS 2 COST 50 LABELS long)
endforeach()

# Answers while the disk changes: a share of what scripts/nightly.sh tries. They begin first, since they wait more than
# they compute: an index is not written before the times of its folders have passed.
foreach(part lock-step floods watches free)
  add_test(NAME faults.watch.${part} COMMAND faults/watch.py $<TARGET_FILE:kelwhich_program> --part ${part} --changes 300
           WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set_tests_properties(faults.watch.${part} PROPERTIES TIMEOUT 300 COST 100 LABELS long)
endforeach()

# The benchmarks check every answer; small ones keep them working.
add_test(NAME benchmarks.quick COMMAND "${PROJECT_SOURCE_DIR}/benchmarks/bench.py" "${PROJECT_BINARY_DIR}" --quick)
add_test(NAME benchmarks.store COMMAND "${PROJECT_SOURCE_DIR}/benchmarks/store.sh" 3000 $<TARGET_FILE:kelwhich_program>)
set_tests_properties(benchmarks.quick benchmarks.store PROPERTIES TIMEOUT 300 COST 50 LABELS long)

# System calls, which no noise changes.
add_test(NAME benchmarks.calls COMMAND "${PROJECT_SOURCE_DIR}/benchmarks/calls.py" $<TARGET_FILE:kelwhich_program>)
