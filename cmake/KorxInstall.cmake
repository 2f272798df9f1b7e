# cmake --install: headers, the library, a CMake package and korx.pc.

include(CMakePackageConfigHelpers)

install(TARGETS korx EXPORT korxTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/korx DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(KORX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/korx)
install(EXPORT korxTargets NAMESPACE korx:: DESTINATION ${KORX_CMAKE_DIR})
configure_package_config_file(cmake/korxConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/korxConfig.cmake
    INSTALL_DESTINATION ${KORX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/korxConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/korxConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/korxConfigVersion.cmake
    DESTINATION ${KORX_CMAKE_DIR})

if(KORX_BUILD_SHARED)
    set(KORX_PC_CFLAGS "")
else()
    set(KORX_PC_CFLAGS "-DKORX_STATIC")
endif()
# The .pc file finds its prefix from where it is installed, so a relocated install works too.
file(RELATIVE_PATH KORX_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" KORX_PC_TO_PREFIX "${KORX_PC_TO_PREFIX}")
configure_file(cmake/korx.pc.in ${CMAKE_CURRENT_BINARY_DIR}/korx.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/korx.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
