# Target `documentation`: the comments of the headers as HTML, in documentation/html of the build directory.
find_program(BRIMLET_DOXYGEN doxygen DOC "Makes the documentation of the headers")
if(NOT BRIMLET_DOXYGEN)
    message(STATUS "doxygen is not installed: the comments of the headers are neither checked nor made into HTML")
    return()
endif()

# brimlet_doxygen(VARIABLE OUTPUT HEADERS): the command that runs Doxygen. HEADERS is ALL, or C for those of which
# every parameter and result has to be documented.
function(brimlet_doxygen variable output headers)
    set(cpp_headers bindings/cpp)
    set(is_strict NO)
    set(is_distributed YES)
    if(headers STREQUAL "C")
        set(cpp_headers "")
        set(is_strict YES)
        set(is_distributed NO)
    endif()
    set(${variable} ${CMAKE_COMMAND} -E env BRIMLET_VERSION=${PROJECT_VERSION} BRIMLET_OUTPUT=${output}
        BRIMLET_CPP_HEADERS=${cpp_headers} BRIMLET_PARAMETERS=${is_strict} BRIMLET_DISTRIBUTE=${is_distributed}
        ${BRIMLET_DOXYGEN} docs/Doxyfile PARENT_SCOPE)
endfunction()

set(documentation_output ${PROJECT_BINARY_DIR}/documentation)
file(MAKE_DIRECTORY ${documentation_output})
brimlet_doxygen(documentation_command ${documentation_output} ALL)
add_custom_target(documentation COMMAND ${documentation_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    COMMENT "Writing documentation/html" VERBATIM)
