# What every Windows program that is handed over has in common: the oldest Windows it runs on, its copyright line, no
# trace of when and where it was built, and its symbols in a file beside it.

# Windows 7. The linker writes it into the files; the test `imports` holds their imports to it.
set(PXTARVO_OLDEST_MAJOR 6)
set(PXTARVO_OLDEST_MINOR 1)
file(STRINGS COPYRIGHT PXTARVO_COPYRIGHT)
# What resource scripts read of it. (On windres's command line a text would lose its quotes.)
set(PXTARVO_PRODUCT_HEADER "${PROJECT_BINARY_DIR}/product/product.h")
file(CONFIGURE OUTPUT "${PXTARVO_PRODUCT_HEADER}" CONTENT
"#define PXTARVO_COPYRIGHT \"@PXTARVO_COPYRIGHT@\"
#define PXTARVO_MAJOR @PROJECT_VERSION_MAJOR@
#define PXTARVO_MINOR @PROJECT_VERSION_MINOR@
#define PXTARVO_PATCH @PROJECT_VERSION_PATCH@
" @ONLY)

add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
add_link_options(-Wl,--no-insert-timestamp
    -Wl,--major-os-version=${PXTARVO_OLDEST_MAJOR},--minor-os-version=${PXTARVO_OLDEST_MINOR}
    -Wl,--major-subsystem-version=${PXTARVO_OLDEST_MAJOR},--minor-subsystem-version=${PXTARVO_OLDEST_MINOR})

# hand_over(<program or DLL>): moves its symbols into FILE.debug beside it, where a debugger finds them, and makes it a
# part of the target `product`.
add_custom_target(product)
function(hand_over target)
    add_dependencies(product ${target})
    set(timeless ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
    set(file "$<TARGET_FILE_NAME:${target}>")
    add_custom_command(TARGET ${target} POST_BUILD VERBATIM WORKING_DIRECTORY "$<TARGET_FILE_DIR:${target}>"
        COMMAND ${timeless} ${CMAKE_OBJCOPY} --only-keep-debug "${file}" "${file}.debug"
        COMMAND ${timeless} ${CMAKE_STRIP} "${file}"
        COMMAND ${timeless} ${CMAKE_OBJCOPY} "--add-gnu-debuglink=${file}.debug" "${file}")
endfunction()
