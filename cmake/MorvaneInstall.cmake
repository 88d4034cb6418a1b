# What `cmake --install` puts where: headers, library, import library, the English texts, the CMake package.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(MORVANE_SHARE_FOLDER ${CMAKE_INSTALL_DATADIR}/Morvane)
set(MORVANE_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/Morvane)

install(TARGETS Morvane EXPORT MorvaneTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Morvane)
install(DIRECTORY Interface/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Morvane FILES_MATCHING PATTERN *.h)
install(FILES ${Morvane_ENGLISH_TEXTS} DESTINATION ${MORVANE_SHARE_FOLDER})

configure_package_config_file(cmake/MorvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/MorvaneConfig.cmake
  INSTALL_DESTINATION ${MORVANE_PACKAGE_FOLDER}
  PATH_VARS MORVANE_SHARE_FOLDER)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MorvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MorvaneConfig.cmake ${PROJECT_BINARY_DIR}/MorvaneConfigVersion.cmake
  cmake/MorvaneAbi.cmake cmake/MorvaneAddApplication.cmake cmake/MorvaneApplication.manifest.in
  cmake/MorvaneEmbedStringScript.cmake cmake/MorvaneEmbedVersion.cmake cmake/MorvaneVersion.rc.in
  DESTINATION ${MORVANE_PACKAGE_FOLDER})
install(EXPORT MorvaneTargets NAMESPACE Morvane:: DESTINATION ${MORVANE_PACKAGE_FOLDER})
