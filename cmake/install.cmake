# Installs the header, the library, the CMake package (kelvo::kelvo) and the pkg-config file. The
# tree can be moved as a whole: nothing in it names its prefix.
include(CMakePackageConfigHelpers)

install(TARGETS kelvo EXPORT kelvoTargets)
install(FILES ${CMAKE_SOURCE_DIR}/include/kelvo.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(KELVO_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/kelvo)
install(EXPORT kelvoTargets NAMESPACE kelvo:: DESTINATION ${KELVO_PACKAGE_DIR})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/kelvoConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/kelvoConfig.cmake
                              INSTALL_DESTINATION ${KELVO_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kelvoConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/kelvoConfig.cmake ${CMAKE_BINARY_DIR}/kelvoConfigVersion.cmake
        DESTINATION ${KELVO_PACKAGE_DIR})

set(KELVO_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH KELVO_PREFIX_FROM_PC "/prefix/${KELVO_PKGCONFIG_DIR}" "/prefix")
string(REGEX REPLACE "/$" "" KELVO_PREFIX_FROM_PC "${KELVO_PREFIX_FROM_PC}")
configure_file(${CMAKE_SOURCE_DIR}/cmake/kelvo.pc.in ${CMAKE_BINARY_DIR}/kelvo.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kelvo.pc DESTINATION ${KELVO_PKGCONFIG_DIR})
