# brimlet_exports(TARGET LIST): generates, from the list of exported functions, the linker's version script TARGET.map
# and the Windows module definition TARGET.def in the current binary directory, and links the target with the one for
# its platform. A line of the list is a name, a comment after "#", or empty.
function(brimlet_exports target list)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
    file(STRINGS ${list} names REGEX "^[^#]")

    # One anonymous node: the symbols have no version, and everything else is hidden, also the C++ runtime's weak
    # symbols.
    list(JOIN names ";\n        " lines)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
    file(GENERATE OUTPUT ${script} CONTENT "{\n    global:\n        ${lines};\n    local:\n        *;\n};\n")
    list(JOIN names "\n    " lines)
    set(definition ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
    file(GENERATE OUTPUT ${definition} CONTENT "LIBRARY ${target}\nEXPORTS\n    ${lines}\n")

    if(WIN32)
        set_source_files_properties(${definition} PROPERTIES GENERATED ON)
        target_sources(${target} PRIVATE ${definition})
    elseif(NOT APPLE)
        target_link_options(${target} PRIVATE LINKER:--version-script=${script} LINKER:--no-undefined-version)
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
    endif()
endfunction()
