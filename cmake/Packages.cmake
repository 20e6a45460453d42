# Packages of Debian: `cpack` in a build made by ./scripts/package.
string(TOLOWER ${PROJECT_NAME} package)
set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each component has its own
set(CPACK_PACKAGE_CONTACT "The ZoBgpCommunity developers <maintainers@zobgpcommunity.invalid>")
set(CPACK_PACKAGE_HOMEPAGE_URL "")
set(CPACK_STRIP_FILES OFF) # the debug packages take the symbols out
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL runtime development tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME lib${package}${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"libraries for BGP communities
Values and lists of BGP communities, each distinct one once in memory, typed
by a parser that plug-ins extend, printed and serialized exactly.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME lib${package}-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"headers of the libraries for BGP communities
For programs that are built on the libraries: headers, a package for CMake and
files for pkg-config.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME bgpcomm)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOL_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
"tool for BGP communities in MRT dumps
Reads routing tables and updates as route collectors keep them, and shows the
communities in them: what they are, what they mean, who sends them.")

# The linker's cache is renewed by a trigger.
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/triggers)

# Each has its copyright and changes where Debian looks for them.
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/copyright.in copyright @ONLY)
configure_file(cmake/changelog.Debian.in changelog.Debian @ONLY)
configure_file(CHANGELOG.md changelog COPYONLY)
execute_process(COMMAND gzip -9nf changelog changelog.Debian WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
                COMMAND_ERROR_IS_FATAL ANY)
foreach(component runtime development tool)
  string(TOUPPER ${component} name)
  set(name ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
                ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endforeach()
include(CPack)
