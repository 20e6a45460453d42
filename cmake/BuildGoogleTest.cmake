# GoogleTest from Debian's source package, so that it is built as everything else is: for 32 bits,
# under a sanitizer, by either compiler. Gives the target `gtest_main`.
include(GoogleTest)

set(googletest_root /usr/src/googletest CACHE PATH "Sources of GoogleTest")
if(NOT EXISTS ${googletest_root}/googletest/src/gtest-all.cc)
  message(FATAL_ERROR "No GoogleTest in ${googletest_root}: install the package googletest, "
                      "or build without tests (-DZOBGP_TESTS=OFF)")
endif()
add_library(gtest_main STATIC EXCLUDE_FROM_ALL
  ${googletest_root}/googletest/src/gtest-all.cc
  ${googletest_root}/googlemock/src/gmock-all.cc
  ${googletest_root}/googlemock/src/gmock_main.cc)
target_include_directories(gtest_main SYSTEM
  PUBLIC ${googletest_root}/googletest/include ${googletest_root}/googlemock/include
  PRIVATE ${googletest_root}/googletest ${googletest_root}/googlemock)
target_compile_options(gtest_main PRIVATE -w)
target_link_libraries(gtest_main PUBLIC Threads::Threads)
