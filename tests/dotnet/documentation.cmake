# Runs the program and the commands of the document in an empty directory, and compares the output with that of the
# document. The compiler's warnings count as output, so a public member without a documentation comment fails.
#   -DDOCUMENT=... -DBINDING=... -DDIRECTORY=...
file(READ ${DOCUMENT} document)

function(take_block language result)
    string(REGEX MATCH "\n```${language}\n([^`]*)```\n" block "${document}")
    if(NOT block)
        message(FATAL_ERROR "${DOCUMENT} has no block of ${language}")
    endif()
    set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

take_block(csharp program)
take_block(sh commands)
take_block(text expected)

file(REMOVE_RECURSE ${DIRECTORY})
file(MAKE_DIRECTORY ${DIRECTORY})
file(WRITE ${DIRECTORY}/Anna.cs "${program}")
file(WRITE ${DIRECTORY}/commands.sh "${commands}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env BRIMLET=${BINDING} sh -e commands.sh
    WORKING_DIRECTORY ${DIRECTORY} OUTPUT_VARIABLE printed RESULT_VARIABLE failed)
if(failed OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "${DOCUMENT}: status ${failed}, printed\n${printed}instead of\n${expected}")
endif()
message(STATUS "printed as written:\n${printed}")
