# A room of the house: one folder, one target, linked only to the rooms that it may include. Its headers are reachable
# under their path from the top (host/tables.h) through a folder of links of its own, so a target sees the headers of
# the rooms that it links, of those that their headers name in turn, and of no others.
#
#   add_room(<target> <folder> [SEPARATE] [PUBLIC <room or library>...] [PRIVATE <room or library>...])
#       a static library, or a header-only target; PUBLIC are those that its headers include, SEPARATE
#       where two of its files use one name for things of their own
#   add_room_program(<target> <folder> LINKS <room or library>... [SOURCES <further file>...])
#       a program of all the folder's sources
#   describe_room(<target> <folder> <room or library>...)
#       of a target that is made otherwise: gives it its folder of links and enters it into the house's list

# How many files are compiled together where PXTARVO_UNITY is set; 0 are all of a target.
set(PXTARVO_ROOM_BATCH 12)
set(PXTARVO_PROGRAM_BATCH 0)

function(describe_room target folder)
    set(link_root "${PROJECT_BINARY_DIR}/rooms/${target}")
    file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
    file(REMOVE_RECURSE "${link_root}")
    file(MAKE_DIRECTORY "${link_root}/${folder}")
    foreach(header IN LISTS headers)
        get_filename_component(name "${header}" NAME)
        file(CREATE_LINK "${header}" "${link_root}/${folder}/${name}" SYMBOLIC)
    endforeach()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL INTERFACE_LIBRARY)
        target_include_directories(${target} INTERFACE "${link_root}")
    else()
        target_include_directories(${target} PUBLIC "${link_root}")
    endif()
    set_property(GLOBAL APPEND PROPERTY PXTARVO_ROOMS ${target})
    set_property(GLOBAL PROPERTY PXTARVO_FOLDER_${target} "${folder}")
    set_property(GLOBAL PROPERTY PXTARVO_LINKS_${target} "${ARGN}")
endfunction()

function(add_room target folder)
    cmake_parse_arguments(ROOM "SEPARATE" "" "PUBLIC;PRIVATE" ${ARGN})
    file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    if(sources)
        add_library(${target} STATIC ${sources} ${headers})
        if(PXTARVO_UNITY AND NOT ROOM_SEPARATE)
            set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${PXTARVO_ROOM_BATCH})
        endif()
        target_link_libraries(${target} PUBLIC ${ROOM_PUBLIC} PRIVATE ${ROOM_PRIVATE})
    else()
        add_library(${target} INTERFACE)
        target_link_libraries(${target} INTERFACE ${ROOM_PUBLIC})
    endif()
    describe_room(${target} ${folder} ${ROOM_PUBLIC} ${ROOM_PRIVATE})
endfunction()

function(add_room_program target folder)
    cmake_parse_arguments(ROOM "" "" "LINKS;SOURCES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    add_executable(${target} ${sources} ${ROOM_SOURCES})
    set_target_properties(${target} PROPERTIES UNITY_BUILD ${PXTARVO_UNITY}
                                               UNITY_BUILD_BATCH_SIZE ${PXTARVO_PROGRAM_BATCH})
    target_link_libraries(${target} PRIVATE ${ROOM_LINKS})
    describe_room(${target} ${folder} ${ROOM_LINKS})
endfunction()
