# ABI check: writes the dump of a library, or compares a library with the stored dump.
#   -DMODE=write -DABIDW=... -DLIBRARY=... -DHEADERS=... -DSOURCE=... -DDUMP=...
#   -DMODE=compare -DABIDIFF=... -DLIBRARY=... -DDUMP=...
#   -DMODE=spoil with the arguments of compare: the same with a field moved in a copy of the dump, which must fail
set(public_only --exported-interfaces-only)

if(MODE STREQUAL write)
    execute_process(COMMAND ${ABIDW} ${public_only} --drop-private-types --headers-dir ${HEADERS}
            --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --no-parameter-names --drop-undefined-syms ${LIBRARY}
        OUTPUT_VARIABLE text RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "${ABIDW} failed: ${failed}")
    endif()
    string(REPLACE "path='${SOURCE}/" "path='" text "${text}")
    file(WRITE ${DUMP} "${text}")
    return()
endif()

if(MODE STREQUAL spoil)
    file(READ ${DUMP} text)
    string(REPLACE "layout-offset-in-bits='192'" "layout-offset-in-bits='224'" spoilt "${text}")
    if(spoilt STREQUAL text)
        message(FATAL_ERROR "the dump has no field to move")
    endif()
    set(DUMP ${CMAKE_CURRENT_BINARY_DIR}/spoilt.abi)
    file(WRITE ${DUMP} "${spoilt}")
endif()

execute_process(COMMAND ${ABIDIFF} ${public_only} ${DUMP} ${LIBRARY}
    OUTPUT_VARIABLE report RESULT_VARIABLE status)
if(MODE STREQUAL spoil)
    if(NOT report MATCHES "offset changed")
        message(FATAL_ERROR "abidiff does not report a moved field (${status}):\n${report}")
    endif()
elseif(status)
    message(FATAL_ERROR "the ABI of the library differs from the stored dump (${status}):\n${report}")
endif()
