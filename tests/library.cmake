# The library's objects over a host that records what it is asked.
add_unit_tests(
  library_tests
  SOURCES
  adaptors/CachingAdaptorsTest.cpp
  adaptors/RealFileSystemTest.cpp
  entry/InvokeTest.cpp
  entry/KelwhichTest.cpp
  host/ORVAKWhichResolverTest.cpp
  host/PathsTest.cpp
  resolver/ClassificationTest.cpp
  resolver/ExplanationTest.cpp
  resolver/FailureTest.cpp
  resolver/GatheringTest.cpp
  resolver/LookupTest.cpp
  resolver/OrderingTest.cpp
  resolver/RandomWorldsTest.cpp
  resolver/RedirectsTest.cpp
  resolver/SupportEntriesTest.cpp
  support/FakeArrays.cpp
  support/RecordingHost.cpp
  ../standalone/DataArrays.cpp
  LIBRARIES
  kelwhich_objects
  kelwhich_paths)
target_compile_definitions(library_tests PRIVATE KELWHICH_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
