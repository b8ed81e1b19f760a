# The compiler of interface descriptions, and what is made with it.
find_program(WIDL widl REQUIRED)
find_program(FAKETIME faketime REQUIRED)
# stdole2.tlb comes with Wine; which of Wine's architectures it is taken from makes no difference.
file(GLOB stdole_places /usr/lib/*/wine/*-windows /usr/lib/wine/*-windows)
find_path(STDOLE_FOLDER stdole2.tlb PATHS ${stdole_places} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(PXTARVO_WIDL ${WIDL} --win64 -L "${STDOLE_FOLDER}")
else()
    set(PXTARVO_WIDL ${WIDL} --win32 -L "${STDOLE_FOLDER}")
endif()

# compile_type_library(<library> <description>): the library holds the time at which it was made: one and the same in
# every build.
function(compile_type_library library description)
    add_custom_command(OUTPUT "${library}" DEPENDS "${description}" VERBATIM
        COMMAND ${CMAKE_COMMAND} -E env TZ=UTC ${FAKETIME} -f "2026-01-01 00:00:00"
                ${PXTARVO_WIDL} -t -o "${library}" "${description}")
endfunction()
