# The MRT reader, a library of its own: alone among the libraries it takes others than the standard one.
find_package(ZLIB REQUIRED)
find_package(BZip2 REQUIRED)
find_package(LibLZMA REQUIRED)
find_library(ZSTD_LIBRARY zstd REQUIRED)
find_path(ZSTD_INCLUDE_DIR zstd.h REQUIRED)
add_library(zstd_shared INTERFACE IMPORTED)
target_link_libraries(zstd_shared INTERFACE ${ZSTD_LIBRARY})
target_include_directories(zstd_shared INTERFACE ${ZSTD_INCLUDE_DIR})
set(mrt_formats ZLIB::ZLIB BZip2::BZip2 LibLZMA::LibLZMA zstd_shared)

file(GLOB mrt_sources CONFIGURE_DEPENDS mrt/*.cpp)
file(GLOB mrt_headers CONFIGURE_DEPENDS mrt/*.h)
add_library(ZoBgpMrt SHARED ${mrt_sources})
target_sources(ZoBgpMrt PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${mrt_headers})
target_link_libraries(ZoBgpMrt
  PUBLIC ZoBgpPlatform
  PRIVATE ${mrt_formats})
