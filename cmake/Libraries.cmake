# zobgp_library(name [BASE folder] FOLDERS folder... [LINK library...] [PRIVATE library...]): one of the
# libraries, of all sources in these folders of BASE (the root of the tree by default), and in the list
# `libraries`. LINK is for what users of its headers need, too.
#
# Folders named internal hold bodies of templates and what only sources need: their headers are not
# installed.
include(${CMAKE_CURRENT_LIST_DIR}/ExportNamespaces.cmake)

function(zobgp_library name)
  cmake_parse_arguments(PARSE_ARGV 1 its "" BASE "FOLDERS;LINK;PRIVATE")
  set(base ${PROJECT_SOURCE_DIR}/${its_BASE})
  list(TRANSFORM its_FOLDERS PREPEND ${base}/)
  list(TRANSFORM its_FOLDERS APPEND /*.cpp OUTPUT_VARIABLE sources)
  list(TRANSFORM its_FOLDERS APPEND /*.h OUTPUT_VARIABLE headers)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${sources})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${headers})
  list(FILTER headers EXCLUDE REGEX /internal/)

  add_library(${name} ${sources})
  add_library(ZoBgpCommunity::${name} ALIAS ${name})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${base} FILES ${headers})
  target_link_libraries(${name} PUBLIC ${its_LINK} PRIVATE ${its_PRIVATE})
  target_compile_features(${name} PUBLIC cxx_std_20)
  # Before 1.0 every minor version may change the binary interface.
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  get_target_property(type ${name} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    zobgp_export_namespaces(${name} Mox Orv MoxStash Zonet ZoFmt Acl Routing BgpShowCli)
  else()
    # All of the archive: types that a program finds by name alone are named by none of its objects.
    target_link_options(${name} INTERFACE
      LINKER:--whole-archive,$<TARGET_FILE:ZoBgpCommunity::${name}>,--no-whole-archive)
  endif()
  set(libraries ${libraries} ${name} PARENT_SCOPE)
endfunction()
