# The portable body, the development host, the tests and the benchmarks.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(LIBMDB REQUIRED IMPORTED_TARGET libmdb)
pkg_check_modules(FREEXL REQUIRED IMPORTED_TARGET freexl)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)

add_room(portable platform/portable LINKS platform PkgConfig::SQLITE PkgConfig::LIBMDB PkgConfig::FREEXL)
add_room(devhost devhost
         LINKS plugin import fields plugin_module host portable platform nlohmann_json::nlohmann_json)
write_house("${PROJECT_BINARY_DIR}/house.cmake")

add_subdirectory(devhost/main)
enable_testing()
add_subdirectory(tests)
add_subdirectory(bench)
