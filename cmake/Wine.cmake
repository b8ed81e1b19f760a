# The development host as a program under Wine, and the tests that drive the real DLL with it.
set(PXTARVO_DLL "" CACHE FILEPATH "The DLL to be tested, of this machine's own width")

add_room(automation platform/windows/automation SEPARATE PUBLIC values)
target_link_libraries(automation PUBLIC ole32 oleaut32 user32 gdi32 advapi32 comdlg32 "${WINE_UUID}")
add_room(wine_objects devhost/wine/objects SEPARATE PUBLIC automation library host platform PRIVATE values)
add_room(wine_screen devhost/wine/screen PUBLIC automation devhost record host platform PRIVATE values)
add_room(winehost devhost/wine
         PUBLIC automation wine_objects wine_screen devhost
         PRIVATE library import stock deletion)

# ADO for plain programs: a server of Wine's own kind, which its loader takes by its whole path.
file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/devhost/wine/ado/*.cpp")
add_library(pxtarvo_ado MODULE ${sources})
set_target_properties(pxtarvo_ado PROPERTIES PREFIX "" OUTPUT_NAME PXTarvoAdo SUFFIX .dll.so)
set(rooms wine_objects automation devhost library dealer portable access files workbook platform values)
target_link_libraries(pxtarvo_ado PRIVATE ${rooms})
target_link_options(pxtarvo_ado PRIVATE "${PROJECT_SOURCE_DIR}/devhost/wine/ado/PXTarvoAdo.spec")
describe_room(pxtarvo_ado devhost/wine/ado ${rooms})

add_room_program(pxtarvo-winehost devhost/wine/main LINKS winehost wine_objects CLI11::CLI11)
add_room_program(pxtarvo-dll-bench benchmarks/dll LINKS winehost dealer portable)

set(googletest_source /usr/src/googletest CACHE PATH "Sources of GoogleTest")
add_library(wine_gtest STATIC "${googletest_source}/googletest/src/gtest-all.cc"
                              "${googletest_source}/googletest/src/gtest_main.cc"
                              "${googletest_source}/googlemock/src/gmock-all.cc")
target_include_directories(wine_gtest PRIVATE "${googletest_source}/googletest" "${googletest_source}/googlemock"
                                      SYSTEM PUBLIC "${googletest_source}/googletest/include"
                                                    "${googletest_source}/googlemock/include")
add_room_program(wine_test tests/wine
    LINKS winehost wine_objects wine_screen automation devhost library host dealer portable sqlite platform values
          tests_common nlohmann_json::nlohmann_json wine_gtest)
# What is built beside the DLL.
get_filename_component(dll_build "${PXTARVO_DLL}/../../.." ABSOLUTE)
target_compile_definitions(wine_test PRIVATE PXTARVO_SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples"
                                             PXTARVO_DLL_PATH="${PXTARVO_DLL}"
                                             PXTARVO_ADO_PATH="$<TARGET_FILE:pxtarvo_ado>"
                                             PXTARVO_SAMPLE_HOST="${dll_build}/examples/host/SampleHost.exe"
                                             PXTARVO_CHECK_DLL="${dll_build}/check/PXTarvoCheck.dll"
                                             PXTARVO_CHECK_PROGRAM="${dll_build}/check/PXTarvoCheck.exe")
add_dependencies(wine_test pxtarvo_ado)
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
