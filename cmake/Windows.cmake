# The DLL and what only it is made of.
add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0601)

add_room(platform_windows platform/windows LINKS platform)
add_room(host_windows host/windows LINKS host platform_windows platform)
add_subdirectory(plugin/com)

enable_testing()
add_house_test()
add_subdirectory(tests/windows)
