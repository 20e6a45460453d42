# GoogleTest from Debian's source package, so that it is built as everything else is: for 32 bits,
# under a sanitizer, by either compiler. Gives the target `gtest_main`.
include(GoogleTest)

set(sources /usr/src/googletest)
if(DEFINED ENV{ZOBGP_GOOGLETEST})
  set(sources $ENV{ZOBGP_GOOGLETEST})
endif()
set(ZOBGP_GOOGLETEST ${sources} CACHE PATH "Sources of GoogleTest")
if(NOT EXISTS ${ZOBGP_GOOGLETEST}/googletest/src/gtest-all.cc)
  message(FATAL_ERROR "No GoogleTest in ${ZOBGP_GOOGLETEST}: install the package googletest, "
                      "or build without tests (-DZOBGP_TESTS=OFF)")
endif()
add_library(gtest_main STATIC EXCLUDE_FROM_ALL
  ${ZOBGP_GOOGLETEST}/googletest/src/gtest-all.cc
  ${ZOBGP_GOOGLETEST}/googlemock/src/gmock-all.cc
  ${ZOBGP_GOOGLETEST}/googlemock/src/gmock_main.cc)
target_include_directories(gtest_main SYSTEM
  PUBLIC ${ZOBGP_GOOGLETEST}/googletest/include ${ZOBGP_GOOGLETEST}/googlemock/include
  PRIVATE ${ZOBGP_GOOGLETEST}/googletest ${ZOBGP_GOOGLETEST}/googlemock)
target_compile_options(gtest_main PRIVATE -w)
target_link_libraries(gtest_main PUBLIC Threads::Threads)
