# The library's objects over a host that records what it is asked.
add_unit_tests(
  library_tests
  SOURCES
  adaptors/AdaptorsTest.cpp
  analysis/BaselineTest.cpp
  analysis/FindingsTest.cpp
  analysis/LockTest.cpp
  analysis/RandomWorldFindingsTest.cpp
  entry/EntryTest.cpp
  host/ORVAKWhichResolverTest.cpp
  host/PathsAndHashTest.cpp
  resolver/ExplanationTest.cpp
  resolver/RandomWorldsTest.cpp
  resolver/ResolverTest.cpp
  support/RecordingHost.cpp
  sweeps/ThreadsTest.cpp
  resolver/SmallWorldsTest.cpp # the slowest, so that faults show before
  ../standalone/HostArrays.cpp
  ../standalone/services/DataArrays.cpp
  LIBRARIES
  kelwhich_analysis
  kelwhich_objects
  kelwhich_paths)
set(KELWHICH_RANDOM_WORLDS 50000 CACHE STRING "How many random worlds the library is compared with the model over")
target_compile_definitions(library_tests PRIVATE KELWHICH_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                 KELWHICH_RANDOM_WORLDS=${KELWHICH_RANDOM_WORLDS})

# Under the thread sanitizer, std::call_once never returns after a throw.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
  add_test(NAME threads.planted-race COMMAND library_tests --gtest_also_run_disabled_tests
                                             --gtest_filter=Threads.DISABLED_PlantedRace)
  set_tests_properties(threads.planted-race PROPERTIES PASS_REGULAR_EXPRESSION "data race")
else()
  target_sources(library_tests PRIVATE support/FailingAllocator.cpp sweeps/FaultSweepTest.cpp)
endif()
rooms(library_tests adaptors+analysis+entry+host resolver+support)
