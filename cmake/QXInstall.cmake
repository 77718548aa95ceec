# Install rules: the libraries, the public headers, find_package(QXFingrix) and a pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS QXSystem QXChem QXFingrix EXPORT QXFingrixTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "QX*.h")
if(TARGET qxfp)
  install(TARGETS qxfp RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(_qx_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QXFingrix)
install(EXPORT QXFingrixTargets NAMESPACE QX:: DESTINATION ${_qx_package_dir})
configure_package_config_file(cmake/QXFingrixConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QXFingrixConfig.cmake INSTALL_DESTINATION ${_qx_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QXFingrixConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QXFingrixConfig.cmake ${PROJECT_BINARY_DIR}/QXFingrixConfigVersion.cmake
  DESTINATION ${_qx_package_dir})

configure_file(cmake/qxfingrix.pc.in ${PROJECT_BINARY_DIR}/qxfingrix.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qxfingrix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
