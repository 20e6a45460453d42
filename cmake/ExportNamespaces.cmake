# zobgp_export_namespaces(target namespace...): the shared library exports what lives in these
# namespaces and nothing else; instantiations of the standard library's templates stay inside.
#
# The linker sees mangled names. One of namespace Mox starts with a prefix below, then N, then
# perhaps K (const member function), then 3Mox. Type information, tables and function-local statics
# of inline functions must be exported with the functions: one module's exception has to be caught,
# and one module's static seen, by the others.
function(zobgp_export_namespaces target)
  set(prefixes
    _Z        # functions and variables
    _ZZ _ZGVZ # statics of functions, and their guards
    _ZGV _ZGR # guards of inline variables, temporaries bound to references
    "_ZT[VTIS]"      # virtual tables, type information
    "_ZT[hv]*_" _ZTc # thunks
  )
  set(patterns)
  foreach(namespace IN LISTS ARGN)
    string(LENGTH ${namespace} length)
    foreach(prefix IN LISTS prefixes)
      string(APPEND patterns " ${prefix}N${length}${namespace}*; ${prefix}NK${length}${namespace}*;")
    endforeach()
    string(APPEND patterns "\n")
  endforeach()
  # The interface for C.
  string(APPEND patterns " zobgp_*;\n")
  set(map ${PROJECT_BINARY_DIR}/${target}.map)
  file(CONFIGURE OUTPUT ${map} CONTENT "{\n global:\n@patterns@ local: *;\n};\n" @ONLY)
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()
