# Every C++ snippet of the documents, compiled as a user of the two libraries would compile it.
file(GLOB documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/docs/*.md")
set(extract "${CMAKE_CURRENT_LIST_DIR}/docs/snippets.py")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${extract}" ${documents})
execute_process(COMMAND "${extract}" "${CMAKE_CURRENT_BINARY_DIR}/docs" ${documents} OUTPUT_VARIABLE snippets
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
foreach(document README embedding)
  if(NOT snippets MATCHES "/${document}\\.1\\.cpp")
    message(FATAL_ERROR "${extract} finds no C++ snippet in ${document}.md: did its form change?")
  endif()
endforeach()
string(REPLACE "\n" ";" snippets "${snippets}")
add_library(docs_snippets OBJECT ${snippets})
target_link_libraries(docs_snippets PRIVATE kelwhich::kelwhich kelwhich::standalone Boost::headers)

# Every command that they show, and what it writes.
add_test(NAME docs.commands COMMAND docs/commands.py $<TARGET_FILE:kelwhich_program> ${documents}
         WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")

# Every link, and every path of the house that they name.
add_test(NAME docs.links COMMAND docs/links.py ${documents} "${PROJECT_SOURCE_DIR}/CONTRIBUTING.md"
         "${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${PROJECT_SOURCE_DIR}/examples/embedding/README.md"
         WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
