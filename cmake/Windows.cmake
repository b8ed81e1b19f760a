# The DLL and what only it is made of.
add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0${PXTARVO_OLDEST_MAJOR}0${PXTARVO_OLDEST_MINOR})
enable_testing()

add_room(automation platform/windows/automation SEPARATE PUBLIC values ole32 oleaut32 uuid)
add_room(windows_data platform/windows/data PUBLIC automation platform)
add_room(windows_system platform/windows/system PUBLIC platform values)
add_room(windows_screen platform/windows/screen PUBLIC windows_system platform PRIVATE values comctl32 comdlg32 gdi32)
add_room(platform_windows platform/windows
         PUBLIC windows_screen windows_system platform PRIVATE windows_data values)
add_room(host_windows host/windows
         PUBLIC automation host platform PRIVATE windows_data windows_screen windows_system values)
include(cmake/TypeLibrary.cmake)
add_subdirectory(plugin/com)
include(cmake/HostDescription.cmake)
add_subdirectory(examples/host)
add_subdirectory(check)
if(PXTARVO_TESTS)
    add_subdirectory(tests/windows)
    add_subdirectory(tests/package)
endif()
