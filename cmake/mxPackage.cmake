# The installed package: CMake config with a version file, and a pkg-config file.
include(CMakePackageConfigHelpers)

install(EXPORT mx3DManipulationTargets
    NAMESPACE mx3DManipulation::
    DESTINATION "${MX3D_INSTALL_CMAKEDIR}")
configure_package_config_file(cmake/mx3DManipulationConfig.cmake.in
    "${PROJECT_BINARY_DIR}/mx3DManipulationConfig.cmake"
    INSTALL_DESTINATION "${MX3D_INSTALL_CMAKEDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/mx3DManipulationConfigVersion.cmake"
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/mx3DManipulationConfig.cmake"
    "${PROJECT_BINARY_DIR}/mx3DManipulationConfigVersion.cmake"
    cmake/FindWildMagic5.cmake
    DESTINATION "${MX3D_INSTALL_CMAKEDIR}")

# The way up from the .pc file's folder to the prefix, one ".." per folder.
string(REGEX REPLACE "[^/]+" ".." MX3D_PC_UP "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
# With the Qt event filter, the Qt headers it includes come with the flags.
set(MX3D_PC_REQUIRES "")
if(MX3D_HAS_QT)
    set(MX3D_PC_REQUIRES "Requires.private: Qt6Core\n")
endif()
configure_file(cmake/mx3DManipulation.pc.in "${PROJECT_BINARY_DIR}/mx3DManipulation.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mx3DManipulation.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
