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
  # With the folders of the source, so that the links between the documents and the examples hold.
  install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT program)
  install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT program)
  install(DIRECTORY examples/installation DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT program
          PATTERN "*.cdb" EXCLUDE)
  install(DIRECTORY examples/embedding DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT development)
  install(TARGETS kelwhich_program RUNTIME COMPONENT program)
  set(pages "${PROJECT_BINARY_DIR}/cli/generated")
  install(FILES "${pages}/kelwhich.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT program)
  install(FILES "${pages}/kelwhich" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
          COMPONENT program)
  # Where zsh and fish look depends on the prefix, which is known only at the installation. Below /usr/local, fish looks
  # only where XDG_DATA_DIRS says so; what an administrator installs for it lies in /etc.
  install(CODE "set(pages \"${pages}\")\nset(share \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}\")" COMPONENT program)
  install(CODE [[
    set(zsh "${share}/zsh/site-functions")
    set(fish "${share}/fish/vendor_completions.d")
    if(CMAKE_INSTALL_PREFIX MATCHES "/usr$")
      set(zsh "${share}/zsh/vendor-completions")
    elseif(CMAKE_INSTALL_PREFIX STREQUAL "/usr/local")
      set(fish /etc/fish/completions)
    endif()
    file(INSTALL "${pages}/_kelwhich" DESTINATION "${zsh}")
    file(INSTALL "${pages}/kelwhich.fish" DESTINATION "${fish}")
  ]] COMPONENT program)
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
# From the place of the pkg-config file, so that an installation can be moved.
foreach(folder LIBDIR INCLUDEDIR)
  file(RELATIVE_PATH ${folder} "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_FULL_${folder}}")
endforeach()
foreach(name ${pkgconfig_names})
  configure_file(cmake/${name}.pc.in "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
          COMPONENT development)
endforeach()
