# PXTarvoHost.tlb: what the plug-in calls of a host, for those who write one. After plugin/com, which found the compiler.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(host_widl_system --win64)
else()
    set(host_widl_system --win32)
endif()
set(PXTARVO_HOST_DESCRIPTION "${PROJECT_SOURCE_DIR}/host/windows/PXTarvoHost.idl")
set(PXTARVO_HOST_TYPE_LIBRARY "${PROJECT_BINARY_DIR}/host/windows/PXTarvoHost.tlb")
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/host/windows")
add_custom_command(OUTPUT "${PXTARVO_HOST_TYPE_LIBRARY}" DEPENDS "${PXTARVO_HOST_DESCRIPTION}" VERBATIM
    COMMAND ${CMAKE_COMMAND} -E env TZ=UTC ${FAKETIME} -f "2026-01-01 00:00:00" ${WIDL} ${host_widl_system} -L "${STDOLE_FOLDER}" -t -o "${PXTARVO_HOST_TYPE_LIBRARY}"
            "${PXTARVO_HOST_DESCRIPTION}")
add_custom_target(host_description ALL DEPENDS "${PXTARVO_HOST_TYPE_LIBRARY}")
add_dependencies(product host_description)
