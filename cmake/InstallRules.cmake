# Libraries, headers, tool, and the package that `find_package(ZoBgpCommunity)` finds.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZoBgpCommunity)
install(TARGETS ${libraries} EXPORT ZoBgpCommunityTargets
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZoBgpCommunity)
install(EXPORT ZoBgpCommunityTargets NAMESPACE ZoBgpCommunity:: DESTINATION ${package_dir})
if(TARGET bgpcomm)
  install(TARGETS bgpcomm)
endif()

configure_package_config_file(cmake/ZoBgpCommunityConfig.cmake.in ZoBgpCommunityConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(ZoBgpCommunityConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZoBgpCommunityConfig.cmake
              ${PROJECT_BINARY_DIR}/ZoBgpCommunityConfigVersion.cmake
        DESTINATION ${package_dir})
