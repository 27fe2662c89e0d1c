# The installed tree:
#     bin/webformat                                   the command
#     include/webformat-1/webformat/*.h               the library's headers
#     include/webformat-1/<platform library>/*.h      the headers that those include
#     lib/libwebformat.so, lib/cmake/webformat-1/, lib/pkgconfig/webformat.pc
#     share/webformat/formattermessages.xml, fop.xconf
#     share/doc/webformat/
# Every path inside it is relative, so that it may be moved or installed under any prefix.

include(CMakePackageConfigHelpers)

set(webformat_include_folder ${CMAKE_INSTALL_INCLUDEDIR}/webformat-${PROJECT_VERSION_MAJOR})
set(webformat_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/webformat-${PROJECT_VERSION_MAJOR})

install(DIRECTORY webformat DESTINATION ${webformat_include_folder} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY platform/ DESTINATION ${webformat_include_folder} FILES_MATCHING PATTERN "*.h")
install(FILES ${webformat_message_file} examples/fop.xconf DESTINATION ${CMAKE_INSTALL_DATADIR}/webformat)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(TARGETS webformat EXPORT webformat-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET webformat-cli)
    install(TARGETS webformat-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT webformat-targets NAMESPACE webformat:: DESTINATION ${webformat_package_folder})
configure_package_config_file(cmake/webformat-config.cmake.in ${CMAKE_BINARY_DIR}/package/webformat-config.cmake
    INSTALL_DESTINATION ${webformat_package_folder} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/webformat-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/webformat-config.cmake
              ${CMAKE_BINARY_DIR}/package/webformat-config-version.cmake
        DESTINATION ${webformat_package_folder})

file(RELATIVE_PATH webformat_prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/webformat.pc.in ${CMAKE_BINARY_DIR}/package/webformat.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/webformat.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
