# What the compiler wineg++ needs: it defines the macros by which libraries know Windows, but the libraries here are
# Linux's own.
# <filesystem> must be read before the Windows headers define one of these macros again.
add_compile_options(-U_WIN32 -U__WIN32 -U__WIN32__ "SHELL:-include filesystem")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# The compiler searches it last by itself; named earlier, it hides the standard library's own headers.
list(APPEND CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)

# By its place: Linux has another library of this name.
file(GLOB wine_folders /usr/lib/*/wine/*-unix)
find_library(WINE_UUID uuid PATHS ${wine_folders} NO_DEFAULT_PATH REQUIRED)
