# The MRT reader, a library of its own: alone among the libraries it takes others than the standard one.
find_package(ZLIB REQUIRED)
find_package(BZip2 REQUIRED)
find_package(LibLZMA REQUIRED)
find_library(ZSTD_LIBRARY zstd REQUIRED)
find_path(ZSTD_INCLUDE_DIR zstd.h REQUIRED)

zobgp_library(ZoBgpMrt FOLDERS mrt LINK ZoBgpPlatform)
# Zstandard by name: it has no package that users of an installed tree could find.
target_link_libraries(ZoBgpMrt PRIVATE ZLIB::ZLIB BZip2::BZip2 LibLZMA::LibLZMA zstd)
target_include_directories(ZoBgpMrt PRIVATE ${ZSTD_INCLUDE_DIR})
