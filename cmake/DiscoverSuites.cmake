cmake_minimum_required(VERSION 3.25)

# Run as a script once a program of tests is linked (cmake -D PROGRAM=<file> -D PREFIX=<start of the names>
# -D EXCEPT=<filter> -D VARIABLES=<name=value> -D INTO=<file> -P DiscoverSuites.cmake): writes for CTest one test for each
# suite of the program. A process a test would cost more than the test does, above all under a sanitizer.
execute_process(COMMAND ${CMAKE_COMMAND} -E env ${VARIABLES} "${PROGRAM}" --gtest_list_tests "--gtest_filter=-${EXCEPT}"
                OUTPUT_VARIABLE listed COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${listed}")
set(tests "")
foreach(suite IN LISTS suites)
    string(REGEX REPLACE "^\n?(.*)\\.$" "\\1" suite "${suite}")
    set(name "${PREFIX}${suite}")
    string(APPEND tests "add_test([=[${name}]=] [=[${PROGRAM}]=] [=[--gtest_filter=${suite}.*-${EXCEPT}]=])\n")
    if(VARIABLES)
        string(APPEND tests "set_tests_properties([=[${name}]=] PROPERTIES ENVIRONMENT [=[${VARIABLES}]=])\n")
    endif()
endforeach()
file(WRITE "${INTO}" "${tests}")
