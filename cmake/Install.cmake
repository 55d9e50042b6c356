# cmake --install puts xmlquery, the plug-in, the host library, the headers, the man page and a
# package configuration (find_package(XmlPlugin) gives XmlPlugin::host and
# XmlPlugin::XmlPlugin) under the prefix; cpack makes a .deb of the same.
include(CMakePackageConfigHelpers)

set(XMLPLUGIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/XmlPlugin)
file(RELATIVE_PATH XMLPLUGIN_LIB_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})

# Installed binaries find the host library relative to themselves.
set_target_properties(xmlquery PROPERTIES INSTALL_RPATH "$ORIGIN/${XMLPLUGIN_LIB_FROM_BIN}")
set_target_properties(XmlPlugin host PROPERTIES INSTALL_RPATH "$ORIGIN")
target_include_directories(XmlPlugin INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

install(TARGETS xmlquery RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS XmlPlugin host EXPORT XmlPluginTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/host include/XmlPlugin DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES tools/xmlquery/xmlquery.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(EXPORT XmlPluginTargets NAMESPACE XmlPlugin:: DESTINATION ${XMLPLUGIN_CMAKE_DIR})
configure_package_config_file(cmake/XmlPluginConfig.cmake.in
                              ${CMAKE_CURRENT_BINARY_DIR}/XmlPluginConfig.cmake
                              INSTALL_DESTINATION ${XMLPLUGIN_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/XmlPluginConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/XmlPluginConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/XmlPluginConfigVersion.cmake
        DESTINATION ${XMLPLUGIN_CMAKE_DIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xmlplugin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "XML query plug-in for a host scanning engine, with xmlquery")
set(CPACK_PACKAGE_CONTACT "XML query plug-in maintainers <xmlplugin@localhost>")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libexpat1, libstdc++6")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
