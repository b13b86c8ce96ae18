# The stand-alone host, by its object files; its databases are also read and written by the library whose format they
# have.
find_path(CDB_INCLUDE_DIR cdb.h REQUIRED)
find_library(CDB_LIBRARY cdb REQUIRED)
add_unit_tests(
  standalone_tests
  SOURCES
  standalone/DiagnosisTest.cpp
  standalone/FileTreesTest.cpp
  standalone/GoldenFilesTest.cpp
  standalone/IndexedFileTreeTest.cpp
  standalone/InstallationTest.cpp
  standalone/NameSearchTest.cpp
  standalone/SessionTest.cpp
  standalone/SupportStoreBuilderTest.cpp
  standalone/SupportStoreCheckTest.cpp
  standalone/SupportStoreTest.cpp
  standalone/TreeSurveyTest.cpp
  standalone/ViewsTest.cpp
  standalone/WatchedViewTest.cpp
  sweeps/HostSweepTest.cpp
  LIBRARIES
  kelwhich_objects
  kelwhich_standalone_objects
  kelwhich_paths
  kelwhich_standalone_needs
  "${CDB_LIBRARY}")
target_include_directories(standalone_tests SYSTEM PRIVATE "${CDB_INCLUDE_DIR}")
target_compile_definitions(standalone_tests PRIVATE KELWHICH_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
  target_sources(standalone_tests PRIVATE support/FailingAllocator.cpp)
  target_compile_definitions(standalone_tests PRIVATE KELWHICH_SWEEPS_ALLOCATIONS)
endif()
rooms(standalone_tests sweeps+support)
add_test(NAME standalone.schema
         COMMAND standalone/schema.py "${PROJECT_SOURCE_DIR}/standalone/manifest/installation.schema.json" standalone/manifests.json
         WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
