# The development host as a program under Wine, and the tests that drive the real DLL with it. Configured with the
# compiler wineg++, which defines the macros by which libraries know Windows; the libraries here are Linux's own.
# <filesystem> must be read before the Windows headers define one of these macros again.
add_compile_options(-U_WIN32 -U__WIN32 -U__WIN32__ "SHELL:-include filesystem")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# The compiler searches it last by itself; named earlier, it hides the standard library's own headers.
list(APPEND CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)

# By its place: Linux has another library of this name.
file(GLOB wine_folders /usr/lib/*/wine/*-unix)
find_library(WINE_UUID uuid PATHS ${wine_folders} NO_DEFAULT_PATH REQUIRED)

set(PXTARVO_DLL "" CACHE FILEPATH "The DLL to be tested, of this machine's own width")

enable_testing()

# Called once the rooms of the portable body stand.
function(add_wine_programs)
    # Of the Windows bodies only what both compilers understand.
    add_room(automation platform/windows
             FILES automation_errors automation_object automation_values com_headers dispatch reference
             LINKS platform)
    target_link_libraries(automation PUBLIC ole32 oleaut32 user32 gdi32 advapi32 comdlg32 "${WINE_UUID}")
    add_room(winehost devhost/wine
             LINKS automation devhost plugin import stock deletion fields plugin_module host portable platform)

    add_executable(pxtarvo-winehost "${PROJECT_SOURCE_DIR}/devhost/wine/main/main.cpp")
    target_link_libraries(pxtarvo-winehost PRIVATE winehost)

    add_executable(pxtarvo-dll-bench "${PROJECT_SOURCE_DIR}/benchmarks/dll/dll_bench.cpp")
    target_link_libraries(pxtarvo-dll-bench PRIVATE winehost)

    set(googletest_source /usr/src/googletest CACHE PATH "Sources of GoogleTest")
    add_library(wine_gtest STATIC "${googletest_source}/googletest/src/gtest-all.cc"
                                  "${googletest_source}/googletest/src/gtest_main.cc"
                                  "${googletest_source}/googlemock/src/gmock-all.cc")
    target_include_directories(wine_gtest PRIVATE "${googletest_source}/googletest" "${googletest_source}/googlemock"
                                          SYSTEM PUBLIC "${googletest_source}/googletest/include"
                                                        "${googletest_source}/googlemock/include")
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/wine/*.cpp")
    add_executable(wine_test ${sources})
    target_include_directories(wine_test PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(wine_test PRIVATE winehost wine_gtest)
    target_compile_definitions(wine_test PRIVATE PXTARVO_SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples"
                                                 PXTARVO_DLL_PATH="${PXTARVO_DLL}")
    # Wine's loader knows its own programs by this ending.
    set(programs pxtarvo-winehost pxtarvo-dll-bench wine_test)
    set_target_properties(${programs} PROPERTIES SUFFIX .exe.so POSITION_INDEPENDENT_CODE OFF)
    foreach(program IN LISTS programs)
        target_compile_options(${program} PRIVATE -fPIC)  # a library to the linker, whatever its name
    endforeach()

    set(session "${PROJECT_SOURCE_DIR}/tools/wine-session" "${PROJECT_BINARY_DIR}/prefix")
    add_test(NAME wine COMMAND ${session} wine "$<TARGET_FILE:wine_test>")
    add_test(NAME cscript COMMAND ${session} "${PROJECT_SOURCE_DIR}/tests/wine/cscript-session" "${PXTARVO_DLL}")
    set_tests_properties(wine cscript PROPERTIES LABELS wine RESOURCE_LOCK prefix TIMEOUT 600)
endfunction()
