# Libraries, headers, tool, the package that `find_package(ZoBgpCommunity)` finds, and those of
# pkg-config. Components: `runtime` for programs that are linked already, `development`, `tool`.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZoBgpCommunity)
set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/ZoBgpCommunity)
install(TARGETS ${libraries} EXPORT ZoBgpCommunityTargets
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        FILE_SET HEADERS DESTINATION ${include_dir} COMPONENT development)
install(EXPORT ZoBgpCommunityTargets NAMESPACE ZoBgpCommunity:: DESTINATION ${package_dir}
        COMPONENT development)
# Debian keeps site-functions for what the machine's owner adds.
set(zsh_completions $<IF:$<BOOL:${ZOBGP_PACKAGES}>,vendor-completions,site-functions>)
if(TARGET bgpcomm)
  install(TARGETS bgpcomm COMPONENT tool)
  if(NOT ZOBGP_PACKAGES) # their debug packages take the symbols out
    install(CODE "execute_process(COMMAND ${CMAKE_STRIP}
      \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/bgpcomm)" COMPONENT tool)
  endif()
  if(TARGET manuals)
    set(manuals ${PROJECT_BINARY_DIR}/tools)
    install(FILES ${manuals}/bgpcomm.1$<$<BOOL:${ZOBGP_PACKAGES}>:.gz> DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
    install(FILES ${manuals}/bgpcomm.bash RENAME bgpcomm COMPONENT tool
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${manuals}/_bgpcomm COMPONENT tool
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_completions})
  endif()
endif()

# Pages, pictures and the schemas of JSON. Pages name what is in the source tree alone without a link to it.
file(GLOB pages CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/docs docs/*.md)
foreach(page IN LISTS pages)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/${page})
  file(READ docs/${page} text)
  string(REGEX REPLACE "\\[([^]]*)\\]\\(\\.\\./[^)]*\\)" "\\1" text "${text}")
  file(WRITE ${PROJECT_BINARY_DIR}/pages/${page} "${text}")
endforeach()
set(doc_dir $<IF:$<BOOL:${ZOBGP_PACKAGES}>,${CMAKE_INSTALL_DATADIR}/doc/libzobgpcommunity-dev,${CMAKE_INSTALL_DOCDIR}>)
install(DIRECTORY ${PROJECT_BINARY_DIR}/pages/ DESTINATION ${doc_dir} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${doc_dir} COMPONENT development
        FILES_MATCHING PATTERN "*.svg" PATTERN "*.json")

string(REPLACE ";" " " components "${libraries}")
string(REPLACE ZoBgp "" components "${components}")
# Made where no find_package looks: one does beside each folder of PATH, and the build's bin may be there.
set(made ${CMAKE_CURRENT_BINARY_DIR}/to-install)
configure_package_config_file(cmake/ZoBgpCommunityConfig.cmake.in ${made}/ZoBgpCommunityConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${made}/ZoBgpCommunityConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${made}/ZoBgpCommunityConfig.cmake ${made}/ZoBgpCommunityConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# zobgp_pc(library requires private_requires private_libs description): LIBRARY.pc, which finds the
# tree from where it stands itself.
function(zobgp_pc name requires private_requires private_libs description)
  if(NOT TARGET ${name})
    return()
  endif()
  file(RELATIVE_PATH prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" prefix "${prefix}")
  set(libs "-l${name}")
  get_target_property(type ${name} TYPE)
  if(type STREQUAL STATIC_LIBRARY)
    # All of the archive, as for users of CMake.
    set(libs "-Wl,--whole-archive,-l${name},--no-whole-archive ${private_libs}")
    set(requires "${requires} ${private_requires}")
    set(private_requires)
    set(private_libs)
  endif()
  configure_file(cmake/library.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endfunction()
zobgp_pc(ZoBgpPlatform "" "" "-pthread" "What the libraries of BGP communities stand on")
zobgp_pc(ZoBgpCommunity "ZoBgpPlatform" "" "" "${PROJECT_DESCRIPTION}")
zobgp_pc(ZoBgpKinds "ZoBgpCommunity" "" "" "Every assigned kind of BGP communities, with its text")
zobgp_pc(ZoBgpQuery "ZoBgpKinds" "" "" "Questions about BGP communities and paths")
zobgp_pc(ZoBgpMrt "ZoBgpPlatform" "zlib liblzma libzstd" "-lbz2" "A reader of MRT dumps")
list(JOIN below_c " " below_c)
list(TRANSFORM runtime_of_c++ PREPEND -l)
list(JOIN runtime_of_c++ " " runtime_of_c++)
zobgp_pc(zobgp-c "" "${below_c}" "${runtime_of_c++}" "Interned BGP communities for programs in C")
