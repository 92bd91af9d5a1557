# Install rules: targets, headers, the CMake package and the pkg-config files.

include(CMakePackageConfigHelpers)

set(targets vorlane_model vorlane)
if(TARGET vorlane_cbc)
  list(APPEND targets vorlane_cbc)
endif()
install(
  TARGETS ${targets}
  EXPORT vorlane-targets
  FILE_SET HEADERS)
if(TARGET vorlane-solve)
  install(TARGETS vorlane-solve)
endif()

set(VORLANE_WITH_JACE FALSE)
set(packages vorlane vorlane-model)
if(TARGET vorlane_bootstrap_objects)
  set(VORLANE_WITH_JACE TRUE)
  list(APPEND packages vorlane-jace)
endif()

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vorlane")
install(
  EXPORT vorlane-targets
  NAMESPACE vorlane::
  DESTINATION "${package_dir}")
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/vorlaneConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/vorlaneConfig.cmake"
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vorlaneConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vorlaneConfig.cmake"
              "${PROJECT_BINARY_DIR}/vorlaneConfigVersion.cmake" DESTINATION "${package_dir}")

# The .pc files find their prefix by where they stand, so an installed tree can be moved.
file(RELATIVE_PATH VORLANE_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
foreach(package IN LISTS packages)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc"
                 @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${package}.pc"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()

# Lists of rows that headers include; no headers themselves.
install(
  DIRECTORY "${PROJECT_SOURCE_DIR}/include/vorlane"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING
  PATTERN "*.inc")
