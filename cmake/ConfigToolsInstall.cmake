# The package that tools and plug-ins are built against: find_package(ConfigTools CONFIG), or pkg-config.

include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/ConfigTools")

configure_package_config_file(cmake/ConfigToolsConfig.cmake.in ConfigToolsConfig.cmake
    INSTALL_DESTINATION "${package_dir}"
    PATH_VARS CONFIGTOOLS_PLUGIN_DIR)
write_basic_package_version_file(ConfigToolsConfigVersion.cmake COMPATIBILITY SameMajorVersion)

file(RELATIVE_PATH configtools_pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" configtools_pc_prefix "${configtools_pc_prefix}")
configure_file(cmake/configtools.pc.in configtools.pc @ONLY)

install(TARGETS configtools
    EXPORT ConfigToolsTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT ConfigToolsTargets NAMESPACE ConfigTools:: DESTINATION "${package_dir}")
install(DIRECTORY DESTINATION "${CONFIGTOOLS_PLUGIN_DIR}")
install(FILES
    "${CMAKE_CURRENT_BINARY_DIR}/ConfigToolsConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/ConfigToolsConfigVersion.cmake"
    cmake/ConfigToolsModule.cmake
    DESTINATION "${package_dir}")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/configtools.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
