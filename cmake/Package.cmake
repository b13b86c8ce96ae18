# Debian packages, one for each component of the installation. `scripts/package.sh` makes them, with the prefix /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelwhich)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
# .invalid, since no address has been given yet.
set(CPACK_PACKAGE_CONTACT "The maintainers of kelwhich <maintainers@kelwhich.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development program)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR};${PROJECT_BINARY_DIR}/standalone")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=") # docs/versions.md: a later version serves the same programs
set(debian "${PROJECT_SOURCE_DIR}/cmake/debian")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkelwhich0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${debian}/triggers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "The library that code generators call, and the host that lets it run\nwithout the interpreter.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkelwhich-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkelwhich0 (= ${PROJECT_VERSION})")
# The engine's headers of the stand-alone host include it; the library's own do not.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "libboost1.81-dev, libboost-thread1.81-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, CMake and pkg-config files of libkelwhich.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kelwhich)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION devel)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "The program: answers names on a machine without the interpreter.\nNeeds no library.")

# What only a package needs; scripts/package.sh configures with this prefix.
if(CMAKE_INSTALL_PREFIX STREQUAL CPACK_PACKAGING_INSTALL_PREFIX)
  string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
  configure_file("${debian}/changelog.in" "${PROJECT_BINARY_DIR}/debian/changelog" @ONLY)
  execute_process(COMMAND gzip -9nkf "${PROJECT_BINARY_DIR}/debian/changelog" COMMAND_ERROR_IS_FATAL ANY)
  foreach(component ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${component} upper)
    set(package "${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
    install(FILES "${debian}/copyright" "${PROJECT_BINARY_DIR}/debian/changelog.gz"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    if(EXISTS "${debian}/${package}.lintian-overrides")
      install(FILES "${debian}/${package}.lintian-overrides" DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
              RENAME ${package} COMPONENT ${component})
    endif()
  endforeach()
endif()

include(CPack)
