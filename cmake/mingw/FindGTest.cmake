# Built from the sources that Debian's package googletest brings.
if(NOT TARGET GTest::gmock_main)
    set(sources /usr/src/googletest)
    add_library(quorvex_gmock STATIC EXCLUDE_FROM_ALL ${sources}/googletest/src/gtest-all.cc
        ${sources}/googlemock/src/gmock-all.cc ${sources}/googlemock/src/gmock_main.cc)
    target_include_directories(quorvex_gmock SYSTEM PUBLIC ${sources}/googletest/include ${sources}/googlemock/include
                                                   PRIVATE ${sources}/googletest ${sources}/googlemock)
    target_compile_options(quorvex_gmock PRIVATE -w)
    add_library(GTest::gmock_main ALIAS quorvex_gmock)
endif()
set(GTest_FOUND TRUE)
