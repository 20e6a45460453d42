# The interface for C, and for all languages that call it; with the paths of files where the MRT reader is.
set(below_c ZoBgpKinds)
if(TARGET ZoBgpMrt)
  list(APPEND below_c ZoBgpMrt)
endif()
zobgp_library(zobgp-c BASE capi FOLDERS . PRIVATE ${below_c})
target_compile_definitions(zobgp-c PRIVATE $<$<TARGET_EXISTS:ZoBgpMrt>:ZOBGP_WITH_MRT>)

# Static archives of C++ need its libraries, which no compiler of C links by itself.
set(runtime_of_c++)
get_target_property(type zobgp-c TYPE)
if(type STREQUAL STATIC_LIBRARY)
  set(runtime_of_c++ ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(FILTER runtime_of_c++ INCLUDE REGEX "^((std)?c\\+\\+|m)$")
  target_link_libraries(ZoBgpPlatform PRIVATE "$<$<LINK_LANGUAGE:C>:${runtime_of_c++}>")
endif()
