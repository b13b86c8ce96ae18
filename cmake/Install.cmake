# What `cmake --install` puts where, in three components: runtime, development, program.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/kelwhich")
set(standalone_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/kelwhich-standalone")

set(libraries kelwhich)
install(DIRECTORY include/ "${PROJECT_BINARY_DIR}/generated/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        COMPONENT development)
if(NOT KELWHICH_PLATFORM)
  list(APPEND libraries kelwhich_standalone)
  install(FILES standalone/Session.hpp standalone/HostArrays.hpp DESTINATION "${standalone_include_dir}/standalone"
          COMPONENT development)
  install(DIRECTORY platform/include/ DESTINATION "${standalone_include_dir}" COMPONENT development)
  install(FILES cli/kelwhich.schema.json standalone/manifest/installation.schema.json
          DESTINATION "${CMAKE_INSTALL_DATADIR}/kelwhich" COMPONENT program)
  install(DIRECTORY examples/installation DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT program
          PATTERN "*.cdb" EXCLUDE)
  install(TARGETS kelwhich_program RUNTIME COMPONENT program)
  set(pages "${PROJECT_BINARY_DIR}/cli/generated")
  install(FILES "${pages}/kelwhich.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT program)
  install(FILES "${pages}/kelwhich" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
          COMPONENT program)
  install(FILES "${pages}/_kelwhich" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" COMPONENT program)
  install(FILES "${pages}/kelwhich.fish" DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d"
          COMPONENT program)
endif()
install(TARGETS ${libraries} EXPORT kelwhichTargets
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
install(EXPORT kelwhichTargets NAMESPACE kelwhich:: DESTINATION "${package_dir}" COMPONENT development)

configure_package_config_file(cmake/kelwhichConfig.cmake.in "${PROJECT_BINARY_DIR}/kelwhichConfig.cmake"
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kelwhichConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/kelwhichConfig.cmake" "${PROJECT_BINARY_DIR}/kelwhichConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT development)

set(pkgconfig_names kelwhich)
if(NOT KELWHICH_PLATFORM)
  list(APPEND pkgconfig_names kelwhich-standalone)
endif()
foreach(name ${pkgconfig_names})
  configure_file(cmake/${name}.pc.in "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
          COMPONENT development)
endforeach()
