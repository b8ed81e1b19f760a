# PXTarvoHost.tlb: what the plug-in calls of a host, for those who write one.
set(PXTARVO_HOST_DESCRIPTION "${PROJECT_SOURCE_DIR}/host/windows/PXTarvoHost.idl")
set(PXTARVO_HOST_TYPE_LIBRARY "${PROJECT_BINARY_DIR}/host/windows/PXTarvoHost.tlb")
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/host/windows")
compile_type_library("${PXTARVO_HOST_TYPE_LIBRARY}" "${PXTARVO_HOST_DESCRIPTION}")
add_custom_target(host_description ALL DEPENDS "${PXTARVO_HOST_TYPE_LIBRARY}")
add_dependencies(product host_description)
